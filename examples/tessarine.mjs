// Chooses a file or folder in a browser's Open panel: tessarine --verify, from Node 18 on.
//
//   await choose(812, "/tmp/report.txt");    // in the panel that is open, or opens within 10 s
//   await choose(812, "/tmp/report.txt", { openPanel: () => page.click("input[type=file]") });

import { spawn } from "node:child_process";
import * as fs from "node:fs";
import { homedir } from "node:os";
import { join, resolve } from "node:path";

const marginSeconds = 5; // that the process has beyond the tool's own watchdog

// kind: request (correct the call), no-panel, not-chosen (the panel is as open as before), unknown
// (the panel may have taken something: look at the page), busy, no-tool.
export class Failure extends Error {
  constructor(kind, message) {
    super(message);
    this.kind = kind;
    this.mayHaveChosen = kind === "unknown";
    this.mayRepeat = ["no-panel", "not-chosen", "busy"].includes(kind);
  }
}

const requests = [
  "folder does not exist: ",
  "path does not exist: ",
  "path is not a directory: ",
  "not verified: the path is ",
  "not verified: no process has the pid ",
  "not verified: a file for a folder panel: ",
  "not verified: a folder for a file panel: ",
];

export function kindOf(status, message) {
  if (status === 2 || requests.some((text) => message.startsWith(text))) return "request";
  if (message.includes(" is unknown") || !message.startsWith("not verified: ")) return "unknown";
  return message.startsWith("not verified: no open panel of ") ? "no-panel" : "not-chosen";
}

// What the panel of the browser `pid` chose, as { path, seen, result }; otherwise throws Failure.
export async function choose(pid, path, options = {}) {
  const { seconds = 10, openPanel, tool, lockSeconds = 60 } = options;
  const program = programNamed(tool || process.env.TESSARINE || "tessarine");
  const real = fs.existsSync(path) ? fs.realpathSync(path) : path;
  const isFolder = fs.existsSync(real) && fs.statSync(real).isDirectory();
  const words = [isFolder ? "choose-folder" : "choose-path", "--verify", "--pid", String(pid)];
  words.push("--path", real, "--timeout", String(seconds));
  const lock = await lockOf(pid, lockSeconds);
  try {
    await openPanel?.();
    return chosen(await run(program, words, lock, Math.max(seconds + 8, 12) + marginSeconds));
  } finally {
    fs.closeSync(lock);
  }
}

function programNamed(name) {
  const folders = name.includes("/") ? ["."] : (process.env.PATH ?? "").split(":");
  for (const file of folders.map((folder) => resolve(folder, name))) {
    if (fs.existsSync(file)) return file;
  }
  throw new Failure("no-tool", "no tessarine: name it, or set TESSARINE or PATH");
}

// One call at a time for each browser. Node cannot lock a file, but perl can lock it for both; the
// tool inherits the lock, should this process die.
async function lockOf(pid, seconds) {
  const folder = join(homedir(), ".cache", "tessarine");
  fs.mkdirSync(folder, { recursive: true, mode: 0o700 });
  const lock = fs.openSync(join(folder, `${pid}.lock`), "a");
  const script = `use Fcntl ":flock"; my $end = time + shift; open my $lock, ">>&=", 3 or die;
    until (flock $lock, LOCK_EX | LOCK_NB) { exit 75 if time > $end; select undef, undef, undef, 0.1 }`;
  const { status } = await run("perl", ["-e", script, String(seconds)], lock, seconds + 10);
  if (status === 0) return lock;
  fs.closeSync(lock);
  throw new Failure("busy", `another call works on the browser ${pid}`);
}

function run(program, words, lock, limit) {
  return new Promise((done, failed) => {
    const stdio = ["ignore", "pipe", "pipe", lock];
    const child = spawn(program, words, { stdio, timeout: limit * 1000, killSignal: "SIGKILL" });
    let output = "";
    let errors = "";
    child.stdout.setEncoding("utf8").on("data", (text) => (output += text));
    child.stderr.setEncoding("utf8").on("data", (text) => (errors += text));
    child.on("error", (error) => failed(new Failure("no-tool", error.message)));
    child.on("close", (status, signal) => done({ status, signal, output, errors }));
  });
}

function chosen({ status, signal, output, errors }) {
  try {
    const result = status === 0 ? JSON.parse(output) : {};
    if (result.verified) return { path: result.verifiedPath, seen: result.verified, result };
  } catch {
    // Status 0 and no result: what was chosen is unknown.
  }
  const message = errors.trim() || `ended with ${signal ?? status}`;
  throw new Failure(kindOf(status, message), message);
}
