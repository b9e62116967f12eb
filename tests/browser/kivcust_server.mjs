// Starts `kivcust serve` on a free port over its own copy of the end-to-end demo database,
// and stops it again. Paths come from the environment the test was started with.
import { spawn } from 'node:child_process';
import { copyFileSync, mkdirSync, rmSync } from 'node:fs';
import path from 'node:path';

export const kivcust = process.env.KIVCUST;
export const outDir = process.env.BROWSER_OUT || path.resolve('out');

export async function startServer(name, extraArgs = []) {
  mkdirSync(outDir, { recursive: true });
  const db = path.join(outDir, `${name}.db`);
  for (const suffix of ['', '-wal', '-shm']) rmSync(db + suffix, { force: true });
  copyFileSync(process.env.TEMPLATE_DB, db);
  const child = spawn(kivcust, ['--db', db, '--today', '2026-03-01', 'serve', '--port', '0', ...extraArgs], {
    stdio: ['ignore', 'pipe', 'inherit'],
  });
  const url = await new Promise((resolve, reject) => {
    let text = '';
    const timer = setTimeout(() => reject(new Error('kivcust serve did not print its address: ' + text)), 15000);
    child.stdout.on('data', (chunk) => {
      text += chunk;
      const m = /open (http:\/\/[^ ]+\/)/.exec(text);
      if (m) { clearTimeout(timer); resolve(m[1]); }
    });
    child.on('exit', (code) => { clearTimeout(timer); reject(new Error(`kivcust serve ended with ${code}: ${text}`)); });
  });
  const exited = new Promise((resolve) => child.on('exit', resolve));
  return {
    url,
    db,
    async stop() {
      child.kill('SIGTERM');
      const code = await Promise.race([exited, new Promise((r) => setTimeout(() => r('timeout'), 10000))]);
      if (code === 'timeout') { child.kill('SIGKILL'); throw new Error('kivcust serve did not stop on SIGTERM'); }
      return code;
    },
  };
}
