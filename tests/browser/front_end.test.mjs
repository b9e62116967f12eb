// The clerk's front end in Chromium: sign-in, the search screen, the detail editor, message
// boxes and two tabs at once, all through `kivcust serve` over a copy of the demo database.
import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import path from 'node:path';
import { chromium } from 'playwright-core';
import { startServer, outDir } from './kivcust_server.mjs';

let server;
let browser;

before(async () => {
  server = await startServer('front_end');
  browser = await chromium.launch({
    executablePath: process.env.CHROMIUM || '/usr/bin/chromium',
    args: ['--no-sandbox', '--disable-gpu'],
  });
});

after(async () => {
  if (browser) await browser.close();
  if (server) assert.equal(await server.stop(), 0, 'the server stops cleanly on SIGTERM');
});

// The page's own policy forbids eval, which playwright's waiting functions use; the tests'
// contexts lift it (bypassCSP), the clerks' browsers keep it.
async function newTab(context) {
  const page = await context.newPage();
  page.setDefaultTimeout(15000);
  const errors = [];
  page.on('pageerror', (e) => errors.push(e.message));
  page.errors = errors;
  await page.goto(server.url);
  return page;
}

// Waits until every request the page made has been answered.
async function settled(page) {
  await page.waitForFunction(() => document.body.dataset.pending === '0' || document.body.dataset.pending === undefined);
}

async function signIn(page, user, password = 'demo') {
  await page.waitForSelector('#signin-user');
  await page.fill('#signin-user', user);
  await page.fill('#signin-password', password);
  await page.keyboard.press('Enter');
}

const formName = (page) => page.evaluate(() => document.querySelector('[data-form]')?.dataset.form ?? null);
const focused = (page) => page.evaluate(() => document.activeElement?.closest('[data-name]')?.dataset.name ?? null);
const valueOf = (page, name) => page.$eval(`[data-name="${name}"]`, (e) => e.value);

async function waitForForm(page, name) {
  await page.waitForSelector(`[data-form="${name}"]`);
  await settled(page);
}

// Presses Tab until the control named so has the focus (the form's own tab order decides).
async function tabTo(page, name, limit = 80) {
  for (let i = 0; i < limit; i++) {
    if ((await focused(page)) === name) return;
    await page.keyboard.press('Tab');
    await settled(page);
  }
  assert.fail(`Tab never reached ${name}; the focus is on ${await focused(page)}`);
}

test('a clerk finds, opens, edits and saves a customer with the keyboard only', async () => {
  const context = await browser.newContext({ bypassCSP: true, viewport: { width: 1280, height: 900 } });
  const page = await newTab(context);
  await signIn(page, 'clerk');
  await page.waitForSelector('#home-find');
  assert.match(await page.textContent('#who'), /clerk/);

  // Browse, find TAYLOR by its prefix, walk the grid with the arrow keys.
  await page.keyboard.press('Alt+B');
  await waitForForm(page, 'frmFind');
  await page.keyboard.type('tay');
  await page.keyboard.press('Enter');
  await settled(page);
  const names = await page.$$eval('[data-name=fxgCustomers] tbody tr td:first-child', (tds) => tds.map((td) => td.textContent));
  assert.ok(names.length > 3, 'the prefix finds several customers');
  assert.ok(names.every((n) => n.startsWith('TAYLOR')), `every row is a TAYLOR: ${names}`);
  assert.match(await page.textContent('[data-name=stbSearch]'), /Found \d+ Customers/);

  await tabTo(page, 'fxgCustomers');
  await page.keyboard.press('ArrowDown');
  await page.keyboard.press('ArrowDown');
  await settled(page);
  const current = await page.$eval('[data-name=fxgCustomers] tr.current', (tr) => [...tr.children].map((td) => td.textContent));
  const second = await page.$$eval('[data-name=fxgCustomers] tbody tr', (trs) => [...trs[2].children].map((td) => td.textContent));
  assert.deepEqual(current, second, 'two arrow presses make the third row current');
  const customerNo = current[4];
  await page.screenshot({ path: path.join(outDir, 'search_screen.png') });

  // Customer > Properties... opens the current row in the detail editor.
  await page.keyboard.press('Alt+C');
  await page.waitForSelector('.dropdown');
  for (let i = 0; i < 2; i++) await page.keyboard.press('ArrowDown');
  assert.equal(await page.evaluate(() => document.activeElement.dataset.name), 'mnuCustomerDetails');
  await page.keyboard.press('Enter');
  await waitForForm(page, 'frmCustomerDetail');
  assert.match(await page.textContent('.titlebar .title'), new RegExp(`\\(${customerNo}\\)`));
  await page.screenshot({ path: path.join(outDir, 'detail_editor.png'), fullPage: true });

  // A new phone number, typed over the old one and saved with Alt+S.
  await tabTo(page, 'txtPhone');
  await page.keyboard.press('Control+A');
  await page.keyboard.type('970-555-0142');
  await settled(page);
  assert.equal(await valueOf(page, 'txtPhone'), '970-555-0142');
  await page.keyboard.press('Alt+S');
  await settled(page);
  assert.equal(await page.$('#overlay .msgbox'), null, 'the save asks nothing');
  await page.keyboard.press('Escape');
  await waitForForm(page, 'frmFind');
  await page.keyboard.press('Escape');
  await waitForForm(page, 'home');

  // Reopened by number from the home page, the phone is the new one.
  await page.keyboard.press('Alt+3');
  await page.keyboard.type(customerNo);
  await page.keyboard.press('Enter');
  await waitForForm(page, 'frmCustomerDetail');
  assert.equal(await valueOf(page, 'txtPhone'), '970-555-0142');
  assert.deepEqual(page.errors, []);
  await context.close();
});

test('a validation message box is answered and the editor stays open', async () => {
  const context = await browser.newContext({ bypassCSP: true, viewport: { width: 1280, height: 900 } });
  const page = await newTab(context);
  await signIn(page, 'manager');
  await page.waitForSelector('#home-number');
  await page.fill('#home-number', '50');
  await page.keyboard.press('Enter');
  await waitForForm(page, 'frmCustomerDetail');
  await page.fill('[data-name=dtDOB] input[type=date]', '2026-03-01');
  await settled(page);
  await page.keyboard.press('Alt+O');
  await page.waitForSelector('#overlay .msgbox');
  assert.match(await page.textContent('#overlay .msgbox .prompt'), /The Date Of Birth is Invalid/);
  assert.equal(await page.textContent('#overlay .msgbox .title'), 'Validate Customer');
  assert.equal(await page.evaluate(() => document.activeElement.dataset.answer), 'OK', 'the default button has the focus');
  await page.screenshot({ path: path.join(outDir, 'message_box.png') });
  await page.keyboard.press('Enter');
  await settled(page);
  assert.equal(await page.$('#overlay .msgbox'), null);
  assert.equal(await formName(page), 'frmCustomerDetail', 'the refused save keeps the editor open');
  // A list that takes typed text: the text reaches the screen when the clerk moves on.
  await tabTo(page, 'cmbCountry');
  const country = page.locator('[data-name=cmbCountry] input');
  assert.equal(await country.inputValue(), 'CAN');
  await page.keyboard.press('Control+A');
  await page.keyboard.type('NOR');
  await page.keyboard.press('Tab');
  await settled(page);
  assert.equal(await country.inputValue(), 'NOR');
  assert.notEqual(await focused(page), 'cmbCountry', 'Tab moved on');
  // A label's underlined letter takes the focus to its field, through the form's own focus.
  await page.keyboard.press('Alt+N');
  await settled(page);
  assert.equal(await focused(page), 'txtFullName');
  assert.deepEqual(page.errors, []);
  await context.close();
});

test('tab strips, menus with check marks, lists and option groups work from the keyboard', async () => {
  const context = await browser.newContext({ bypassCSP: true, viewport: { width: 1280, height: 900 } });
  const page = await newTab(context);
  await signIn(page, 'manager');
  await page.waitForSelector('#home-find');
  await page.keyboard.press('Alt+F');
  await waitForForm(page, 'frmFind');

  // The tab strip switches the frames: Company shows its own fields and hides the person's.
  await page.focus('[data-name=tabFind] button.selected');
  await page.keyboard.press('ArrowRight');
  await settled(page);
  assert.equal(await page.textContent('[data-name=tabFind] button.selected'), 'Company');
  assert.ok(await page.$('[data-name=txtCompanyName]'));
  assert.equal(await page.$('[data-name=txtLastName]'), null);
  await page.focus('[data-name=tabFind] button.selected');
  await page.keyboard.press('ArrowLeft');
  await settled(page);
  assert.equal(await page.textContent('[data-name=tabFind] button.selected'), 'Person');

  // A list is chosen with the arrow keys, an option with the arrow keys too.
  await tabTo(page, 'cmbGroup');
  await page.keyboard.press('ArrowDown');
  await settled(page);
  await page.keyboard.press('ArrowDown');
  await settled(page);
  // Drawn again from the screen's answer: the list's second item (the first is "any group").
  assert.equal(await page.$eval('[data-name=cmbGroup]', (e) => e.selectedOptions[0].textContent), 'Lodging Partners');
  await tabTo(page, 'optGender');
  const checked = () => page.$eval('[data-name=optGender] input:checked + label', (e) => e.textContent);
  assert.equal(await checked(), 'Either');
  await page.keyboard.press('ArrowLeft');
  await settled(page);
  assert.equal(await checked(), 'Female');

  // Options > Keep Customers In Memory flips its check mark. Alt+O is the OK button's here
  // (a control's letter comes before a menu's), so F10 and the arrows reach the menu.
  const keep = () => page.$eval('[data-name=mnuOptionsUseCollection]', (e) => e.classList.contains('checked'));
  const openOptions = async () => {
    await page.keyboard.press('F10');
    await page.keyboard.press('ArrowRight');
    await page.keyboard.press('ArrowRight');
    await page.waitForSelector('[data-name=mnuOptionsUseCollection]');
  };
  await openOptions();
  assert.equal(await keep(), true);
  await page.keyboard.press('ArrowDown');
  assert.equal(await page.evaluate(() => document.activeElement.dataset.name), 'mnuOptionsUseCollection');
  await page.keyboard.press('Enter');
  await settled(page);
  await openOptions();
  assert.equal(await keep(), false, 'the click reached the screen and came back unchecked');
  await page.keyboard.press('Escape');

  // Esc on the search screen cancels it: home again, nothing chosen.
  await page.keyboard.press('Escape');
  await waitForForm(page, 'home');
  assert.match(await page.textContent('.notice'), /No customer was chosen/);
  assert.deepEqual(page.errors, []);
  await context.close();
});

test('a grid cell is edited from the keyboard with its column\'s list', async () => {
  const context = await browser.newContext({ bypassCSP: true, viewport: { width: 1280, height: 900 } });
  const page = await newTab(context);
  await signIn(page, 'manager');
  await page.waitForSelector('#home-number');
  await page.fill('#home-number', '942');
  await page.keyboard.press('Enter');
  await waitForForm(page, 'frmCustomerDetail');
  await page.focus('[data-name=tabCustomer] button.selected');
  await page.keyboard.press('ArrowRight');
  await settled(page);
  assert.equal(await page.textContent('[data-name=tabCustomer] button.selected'), 'Relationships');

  await tabTo(page, 'grdMaster');
  const header = await page.$$eval('[data-name=grdMaster] th', (ths) => ths.map((th) => th.textContent));
  const relation = header.indexOf('Relationship');
  assert.ok(relation > 0, `a Relationship column: ${header}`);
  await page.keyboard.press('ArrowDown');
  await settled(page);
  // The current cell's place among the columns shown; -1 while it sits in a hidden column.
  const currentColumn = () => page.$$eval('[data-name=grdMaster] td.cell-current',
    (tds) => (tds.length ? [...tds[0].parentNode.children].indexOf(tds[0]) : -1));
  for (let i = 0; i < 10 && (await currentColumn()) < relation; i++) {
    await page.keyboard.press('ArrowRight');
    await settled(page);
  }
  assert.equal(await currentColumn(), relation);
  const before = await page.$eval('[data-name=grdMaster] td.cell-current', (td) => td.textContent);
  const member = await page.$eval('[data-name=grdMaster] tr.current', (tr) => tr.children[1].textContent);
  const relationOf = (first) => page.$$eval('[data-name=grdMaster] tbody tr', (trs, [name, col]) =>
    trs.find((tr) => tr.children[1].textContent === name).children[col].textContent, [first, relation]);
  await page.keyboard.press('F2');
  await page.waitForSelector('[data-name=grdMaster] td select');
  const choices = await page.$$eval('[data-name=grdMaster] td select option', (os) => os.map((o) => o.textContent));
  assert.ok(choices.length > 1, 'the column offers its list');
  await page.keyboard.press(choices.indexOf(before) === 0 ? 'ArrowDown' : 'ArrowUp');
  const chosen = await page.$eval('[data-name=grdMaster] td select', (e) => e.value);
  assert.notEqual(chosen, before);
  await page.keyboard.press('Enter');
  await settled(page);
  assert.equal(await page.$('#overlay .msgbox'), null, 'the change was taken without a question');
  assert.equal(await relationOf(member), chosen, `${member}'s relationship is the one chosen`);
  await page.screenshot({ path: path.join(outDir, 'relationships.png') });
  assert.deepEqual(page.errors, []);
  await context.close();
});

test('a wrong password is refused slowly and says nothing about which part was wrong', async () => {
  const context = await browser.newContext({ bypassCSP: true });
  const page = await newTab(context);
  const messages = [];
  for (const [user, password] of [['clerk', 'wrong'], ['nobody', 'demo']]) {
    const started = Date.now();
    await signIn(page, user, password);
    await page.waitForFunction(() => document.querySelector('.refused')?.textContent !== '');
    assert.ok(Date.now() - started >= 1000, 'a refusal takes at least a second');
    messages.push(await page.textContent('.refused'));
    assert.equal(await page.$('#home-find'), null, 'still signed out');
  }
  assert.equal(messages[0], messages[1]);
  assert.match(messages[0], /not right/);
  await context.close();
});

test('two tabs signed in as different users work at once, each on its own screens', async () => {
  const context = await browser.newContext({ bypassCSP: true, viewport: { width: 1100, height: 800 } });
  const [a, b] = [await newTab(context), await newTab(context)];
  await Promise.all([signIn(a, 'clerk'), signIn(b, 'manager')]);
  await Promise.all([a.waitForSelector('#home-find'), b.waitForSelector('#home-find')]);
  assert.match(await a.textContent('#who'), /clerk/);
  assert.match(await b.textContent('#who'), /manager/);

  await Promise.all([
    (async () => {
      await a.keyboard.press('Alt+F');
      await waitForForm(a, 'frmFind');
      await a.keyboard.type('smi');
      await a.keyboard.press('Enter');
      await settled(a);
    })(),
    (async () => {
      await b.fill('#home-number', '12');
      await b.keyboard.press('Enter');
      await waitForForm(b, 'frmCustomerDetail');
    })(),
  ]);
  assert.equal(await formName(a), 'frmFind');
  assert.equal(await formName(b), 'frmCustomerDetail');
  assert.equal(await valueOf(a, 'txtLastName'), 'smi', 'the other tab\'s screens are not this one\'s');
  const names = await a.$$eval('[data-name=fxgCustomers] tbody tr td:first-child', (tds) => tds.map((td) => td.textContent));
  assert.ok(names.length > 0 && names.every((n) => n.startsWith('SMI')));

  // Signing one tab out leaves the other at work.
  await a.click('#signout');
  await a.waitForSelector('#signin-user');
  await b.reload();
  await waitForForm(b, 'frmCustomerDetail');
  await context.close();
});
