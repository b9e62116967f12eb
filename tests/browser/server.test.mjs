// The server's refusals: each bad request gets a clear 4xx answer, and the session it was
// aimed at goes on working as before.
import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { startServer } from './kivcust_server.mjs';

let server;
before(async () => { server = await startServer('server', ['--idle-minutes', '0.04']); });
after(async () => { if (server) await server.stop(); });

let tabCount = 0;
// A signed-in tab: its id, its cookie and its CSRF token.
async function signIn(user = 'clerk') {
  const tab = `servertest${++tabCount}tab`;
  const res = await fetch(server.url + 'api/signin', {
    method: 'POST',
    headers: { 'X-Kiv-Tab': tab, 'Content-Type': 'application/x-www-form-urlencoded' },
    body: new URLSearchParams({ tab, user, password: 'demo' }),
  });
  assert.equal(res.status, 200);
  const setCookie = res.headers.get('set-cookie');
  const body = await res.json();
  return { tab, csrf: body.csrf, cookie: setCookie.split(';')[0], setCookie };
}

async function send(s, path, params, { csrf = s.csrf, body, origin } = {}) {
  const headers = { 'X-Kiv-Tab': s.tab, Cookie: s.cookie, 'Content-Type': 'application/x-www-form-urlencoded' };
  if (origin) headers.Origin = origin;
  if (csrf !== null) headers['X-CSRF-Token'] = csrf;
  const res = await fetch(server.url + path, {
    method: params || body ? 'POST' : 'GET',
    headers,
    body: body ?? (params ? new URLSearchParams(params) : undefined),
  });
  return { status: res.status, json: await res.json() };
}
const act = (s, verb, ...args) => send(s, 'api/act', [['verb', verb], ...args.map((a) => ['arg', a])]);
const state = (s) => send(s, 'api/state');

// A session with the search screen open and "tay" typed: what every refusal must leave alone.
async function searching() {
  const s = await signIn();
  const open = await send(s, 'api/call', [['screen', 'SelectCustomer']]);
  assert.equal(open.json.form.name, 'frmFind');
  assert.equal((await act(s, 'type', 'txtLastName', 'tay')).status, 200);
  return s;
}

async function assertUnharmed(s) {
  const now = await state(s);
  assert.equal(now.status, 200);
  assert.equal(now.json.form.name, 'frmFind');
  const last = now.json.form.children.find((c) => c.name === 'fraPerson').children.find((c) => c.name === 'txtLastName');
  assert.equal(last.props.Text, 'tay');
  assert.equal((await act(s, 'type', 'txtLastName', 'l')).status, 200, 'the next action is applied');
  const back = await act(s, 'key', 'txtLastName', 'Backspace');
  assert.equal(back.status, 200);
}

test('the session cookie is HttpOnly and SameSite=Strict', async () => {
  const s = await signIn();
  assert.match(s.setCookie, /HttpOnly/);
  assert.match(s.setCookie, /SameSite=Strict/);
  assert.match(s.csrf, /^[0-9a-f]{64}$/);
});

test('bad requests are refused with a clear 4xx answer and the session is unharmed', async () => {
  const cases = [
    { what: 'an unknown verb', run: (s) => act(s, 'frobnicate', 'txtLastName'), status: 400, error: /./ },
    { what: 'an action missing its words', run: (s) => act(s, 'type'), status: 400, error: /./ },
    { what: 'no verb at all', run: (s) => send(s, 'api/act', [['arg', 'x']]), status: 400, error: /no verb/ },
    { what: 'an unknown control', run: (s) => act(s, 'click', 'cmdLaunchRockets'), status: 404, error: /no control named "cmdLaunchRockets"/ },
    { what: 'a grid row that is not a number', run: (s) => act(s, 'select', 'fxgCustomers', 'first'), status: 400, error: /./ },
    { what: 'no CSRF token', run: (s) => send(s, 'api/act', [['verb', 'click'], ['arg', 'cmdFind']], { csrf: null }), status: 403, error: /security token/ },
    { what: 'a wrong CSRF token', run: (s) => send(s, 'api/act', [['verb', 'click'], ['arg', 'cmdFind']], { csrf: 'f'.repeat(64) }), status: 403, error: /security token/ },
    { what: 'a request from another site', run: (s) => send(s, 'api/act', [['verb', 'click'], ['arg', 'cmdFind']], { origin: 'http://elsewhere.example' }), status: 403, error: /another site/ },
    { what: 'an oversized body', run: (s) => send(s, 'api/act', null, { body: 'verb=type&arg=txtLastName&arg=' + 'x'.repeat(200 * 1024) }), status: 413, error: /too large/ },
    { what: 'an answer with no box showing', run: (s) => send(s, 'api/answer', [['button', 'OK']]), status: 409, error: /No message box/ },
    { what: 'a screen called over an open one', run: (s) => send(s, 'api/call', [['screen', 'ShowSearchCustomer']]), status: 409, error: /Close the open screen/ },
  ];
  const s = await searching();
  for (const c of cases) {
    const res = await c.run(s);
    assert.equal(res.status, c.status, c.what);
    assert.match(res.json.error, c.error, c.what);
    await assertUnharmed(s);
  }
});

test('texts with quotes, backslashes, tabs and accents come back exactly as they were put', async () => {
  const s = await searching();
  const text = 'O\'Neil "Jr" \\ a\tb é';
  const res = await act(s, 'paste', 'txtFirstName', text);
  assert.equal(res.status, 200);
  const first = res.json.form.children.find((c) => c.name === 'fraPerson').children.find((c) => c.name === 'txtFirstName');
  assert.equal(first.props.Text, text);
});

// The detail editor's control named so, wherever it sits in the tree.
function findControl(node, name) {
  if (node.name === name) return node;
  for (const child of node.children) {
    const hit = findControl(child, name);
    if (hit) return hit;
  }
  return null;
}

test('several terminals save at once over one database and every save is kept', async () => {
  const clerks = await Promise.all([10, 11, 12, 13].map(async (customer) => {
    const s = await signIn(customer % 2 ? 'clerk' : 'manager');
    const open = await send(s, 'api/call', [['screen', 'ShowCustomer'], ['arg', String(customer)]]);
    assert.equal(open.json.form.name, 'frmCustomerDetail');
    assert.equal((await act(s, 'paste', 'txtOccupation', `GUIDE ${customer}`)).status, 200);
    return { s, customer };
  }));
  const saved = await Promise.all(clerks.map(({ s }) => act(s, 'click', 'cmdOk')));
  for (const res of saved) {
    assert.equal(res.status, 200);
    assert.equal(res.json.box, null, 'no save was refused');
    assert.equal(res.json.form, null, 'OK closed the editor');
  }
  for (const { s, customer } of clerks) {
    const again = await send(s, 'api/call', [['screen', 'ShowCustomer'], ['arg', String(customer)]]);
    assert.equal(findControl(again.json.form, 'txtOccupation').props.Text, `GUIDE ${customer}`);
  }
});

test('a message box takes only its own buttons, and nothing else until it is answered', async () => {
  const s = await signIn('manager');
  await send(s, 'api/call', [['screen', 'ShowCustomer'], ['arg', '50']]);
  assert.equal((await act(s, 'date', 'dtDOB', '2026-03-01')).status, 200);
  const shown = await act(s, 'click', 'cmdOk');
  assert.deepEqual(shown.json.box && shown.json.box.buttons, ['OK']);
  assert.equal(shown.json.box.title, 'Validate Customer');
  const wrong = await send(s, 'api/answer', [['button', 'Yes']]);
  assert.equal(wrong.status, 400);
  assert.match(wrong.json.error, /not a button/);
  const busy = await act(s, 'click', 'cmdCancel');
  assert.equal(busy.status, 409);
  assert.match(busy.json.error, /Answer the message box first/);
  assert.ok(busy.json.box, 'the box is still showing');
  const answered = await send(s, 'api/answer', [['button', 'ok']]);
  assert.equal(answered.status, 200);
  assert.equal(answered.json.box, null);
  assert.equal(answered.json.form.name, 'frmCustomerDetail');
});

test('the home page refuses unknown screens and customer numbers that are not numbers', async () => {
  const s = await signIn();
  for (const [screen, arg, error] of [['LaunchRockets', '', /not a screen/], ['ShowCustomer', '12x', /not a customer number/], ['ShowCustomer', '-4', /not a customer number/]]) {
    const res = await send(s, 'api/call', [['screen', screen], ['arg', arg]]);
    assert.equal(res.status, 400, screen + ' ' + arg);
    assert.match(res.json.error, error);
    assert.equal(res.json.form, null, 'still at home');
  }
});

test('refused sign-ins are answered a fixed time after they came in, one at a time', async () => {
  const tries = ['nobody', 'clerk', 'viewer'].map(async (user) => {
    const started = Date.now();
    const res = await fetch(server.url + 'api/signin', {
      method: 'POST',
      headers: { 'X-Kiv-Tab': 'refusedtab1', 'Content-Type': 'application/x-www-form-urlencoded' },
      body: new URLSearchParams({ tab: 'refusedtab1', user, password: 'not-the-password' }),
    });
    return { status: res.status, error: (await res.json()).error, ms: Date.now() - started };
  });
  const answers = (await Promise.all(tries)).sort((a, b) => a.ms - b.ms);
  for (const a of answers) {
    assert.equal(a.status, 401);
    assert.equal(a.error, answers[0].error, 'an unknown user and a wrong password read the same');
  }
  assert.ok(answers[0].ms >= 1400, `the first refusal waits (${answers[0].ms} ms)`);
  assert.ok(answers[2].ms >= 4000, `three guesses at once take three waits (${answers[2].ms} ms)`);
});

test('a request without a session, or from another tab, is told to sign in', async () => {
  const s = await signIn();
  const stranger = { ...s, tab: 'someothertab1' };
  const res = await state(stranger);
  assert.equal(res.status, 401);
  assert.equal(res.json.signin, true);
  assert.equal((await state({ ...s, tab: 'bad tab!' })).status, 400);
  assert.equal((await state(s)).status, 200);
});

test('an idle session expires, and signing out ends a session at once', async () => {
  const idle = await signIn();
  const busy = await signIn('manager');
  assert.equal((await state(idle)).status, 200);
  for (let i = 0; i < 6; i++) {
    await new Promise((r) => setTimeout(r, 500));
    assert.equal((await state(busy)).status, 200, 'a session in use stays');
  }
  const expired = await state(idle);
  assert.equal(expired.status, 401);
  assert.match(expired.json.error, /sign in/);

  assert.equal((await send(busy, 'api/signout', [])).status, 200);
  assert.equal((await state(busy)).status, 401);
});
