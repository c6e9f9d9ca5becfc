# Tells people what a script is doing: with a terminal on standard error, a line for each stage, as
# "[2/7, 31 s] building". Nothing otherwise. `stages` is the number of them all.
stage_number=0
stage() {
  stage_number=$((stage_number + 1))
  if [[ -t 2 ]]; then printf '[%d/%d, %d s] %s\n' "$stage_number" "$stages" "$SECONDS" "$*" >&2; fi
}
