// Runs examples/tessarine.mjs for the tests.
//
// choose PID PATH [OPENER...]: what comes of it, as JSON.  kinds FILE: of each "STATUS MESSAGE" in it.

import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { Failure, choose, kindOf } from "../../examples/tessarine.mjs";

const { TESSARINE_SECONDS = "10", TESSARINE_LOCK_SECONDS = "60" } = process.env;
const [word, ...words] = process.argv.slice(2);

async function answer([pid, path, ...opener]) {
  const openPanel = opener.length > 0 ? () => execFileSync(opener[0], opener.slice(1)) : undefined;
  const options = { seconds: +TESSARINE_SECONDS, lockSeconds: +TESSARINE_LOCK_SECONDS, openPanel };
  try {
    const chosen = await choose(+pid, path, options);
    return { path: chosen.path, command: chosen.result.command };
  } catch (failure) {
    if (!(failure instanceof Failure)) throw failure;
    const { kind, message, mayHaveChosen, mayRepeat } = failure;
    return { kind, message, mayHaveChosen, mayRepeat };
  }
}

if (word === "kinds") {
  for (const line of readFileSync(words[0], "utf8").split("\n").filter(Boolean)) {
    const [, status, message] = line.match(/^(\d+) (.*)$/);
    console.log(kindOf(+status, message));
  }
} else {
  console.log(JSON.stringify(await answer(words)));
}
