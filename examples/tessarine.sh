# Chooses a file or folder in a browser's Open panel: tessarine --verify, from any POSIX shell.
#
#   . tessarine.sh
#   tessarine_choose 812 "$HOME/report.txt"    # in the panel that is open, or opens within 10 s
#   tessarine_choose 812 "$HOME/report.txt" ./click-the-upload-button    # which opens the panel
#
# Prints the result and ends with 0; otherwise prints "KIND: MESSAGE" on standard error and ends with
#   1  not-chosen: the panel is as open as before, and the same call may be made again
#   2  request: correct the call
#   3  unknown: the panel may have taken something; look at the page
#   4  no-panel: open it and call again
#   5  busy: another call works on that browser
#   6  no-tool: name it in TESSARINE, or put it on the PATH
# TESSARINE_SECONDS (10) is how long to wait for the panel, TESSARINE_LOCK_SECONDS (60) how long for
# another call; whole numbers.

tessarine_choose() (
  pid=$1 target=$2
  shift 2
  seconds=${TESSARINE_SECONDS:-10}
  tool=$(command -v "${TESSARINE:-tessarine}") || tessarine_fail no-tool "set TESSARINE or PATH"
  real=$(realpath "$target" 2>/dev/null) && target=$real
  command=choose-path
  [ -d "$target" ] && command=choose-folder

  # One call at a time for each browser; the tool inherits the lock.
  mkdir -p -m 700 "$HOME/.cache/tessarine" && exec 9>>"$HOME/.cache/tessarine/$pid.lock" || exit 6
  perl -e 'use Fcntl ":flock"; my $end = time + shift; open my $lock, ">>&=", 9 or die;
    until (flock $lock, LOCK_EX | LOCK_NB) { exit 75 if time > $end; select undef, undef, undef, 0.1 }
  ' "${TESSARINE_LOCK_SECONDS:-60}" || tessarine_fail busy "another call works on the browser $pid"
  [ $# = 0 ] || "$@" 9>&- >&2 || tessarine_fail no-panel "$1 ended with $?"

  # The process has five seconds beyond the tool's own watchdog.
  errors=$(mktemp) && trap 'rm -f "$errors"' EXIT
  set -- "$tool" "$command" --verify --pid "$pid" --path "$target" --timeout "$seconds"
  output=$(perl -e 'alarm shift; exec @ARGV; warn "$ARGV[0]: $!\n"; exit 127' \
    $((seconds > 4 ? seconds + 13 : 17)) "$@" 2>"$errors")
  ended=$?
  case $ended$output in
    0*'"verifiedPath"'*) printf '%s\n' "$output" && exit ;;
  esac
  message=$(cat "$errors")
  tessarine_fail "$(tessarine_kind $ended "$message")" "${message:-ended with $ended}"
)

# What a failure of the tool is, by its status and its message.
tessarine_kind() {
  case "$1 $2" in
    "2 "* | "1 folder does not exist: "* | "1 path does not exist: "*) echo request ;;
    "1 not verified: the path is "* | "1 not verified: no process has the pid "*) echo request ;;
    "1 not verified: a file for a folder panel: "*) echo request ;;
    "1 not verified: a folder for a file panel: "*) echo request ;;
    "127 "*) echo no-tool ;;
    *" is unknown"*) echo unknown ;;
    "1 not verified: no open panel of "*) echo no-panel ;;
    "1 not verified: "*) echo not-chosen ;;
    *) echo unknown ;;
  esac
}

# Ends the subshell of tessarine_choose.
tessarine_fail() {
  echo "$1: $2" >&2
  case $1 in
    not-chosen) exit 1 ;;
    request) exit 2 ;;
    unknown) exit 3 ;;
    no-panel) exit 4 ;;
    busy) exit 5 ;;
    *) exit 6 ;;
  esac
}
