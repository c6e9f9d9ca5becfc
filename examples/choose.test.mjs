// node --test examples/choose.test.mjs: a program that chooses, tested on a simulated desktop.
//
// tessarine and tessarine-desktop are found on the PATH.

import assert from "node:assert/strict";
import { execFileSync, spawn } from "node:child_process";
import { mkdtempSync, realpathSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { test } from "node:test";
import { choose } from "./tessarine.mjs";

const browser = 812; // on every desktop that a scenario does not say otherwise of

// Serves a desktop with a file panel until the test ends.
async function serve(context) {
  const folder = realpathSync(mkdtempSync(join(tmpdir(), "desktop-")));
  const scenario = join(folder, "scenario.json");
  const socket = join(folder, "socket");
  writeFileSync(scenario, JSON.stringify({ panels: [{ mode: "files", folder }] }));
  const stdio = ["ignore", "pipe", "inherit"];
  const service = spawn("tessarine-desktop", ["serve", scenario, "--socket", socket], { stdio });
  context.after(() => {
    service.kill();
    rmSync(folder, { recursive: true });
  });
  let lines = 0;
  for await (const line of createInterface({ input: service.stdout })) {
    const [, name, value] = line.match(/^export (\w+)='(.*)'$/);
    process.env[name] = value;
    if (++lines === 3) break;
  }
  const state = () =>
    JSON.parse(execFileSync("tessarine-desktop", ["state", "--socket", socket], { maxBuffer: 1e9 }));
  return { folder, state };
}

test("a file is chosen", async (context) => {
  const { folder, state } = await serve(context);
  const report = join(folder, "a report.txt");
  writeFileSync(report, "quarterly figures");
  assert.equal((await choose(browser, report)).path, report);
  assert.equal(state().panels[0].outcome, "chosen");
  assert.equal(state().panels[0].path, report);
  assert.equal(state().verdict, "true");
});

test("a folder is refused, and the panel stays", async (context) => {
  const { folder, state } = await serve(context);
  await assert.rejects(choose(browser, folder), { kind: "request", mayHaveChosen: false });
  assert.equal(state().panels[0].outcome, "none");
});
