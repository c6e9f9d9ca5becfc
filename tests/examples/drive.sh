# Runs examples/tessarine.sh for the tests, EXAMPLES being its folder.
#
# choose PID PATH [OPENER...]: what comes of it.    kinds FILE: of each "STATUS MESSAGE" in it.

. "$EXAMPLES/tessarine.sh"
case $1 in
  kinds)
    while read -r status_of_tool message; do
      tessarine_kind "$status_of_tool" "$message"
    done <"$2"
    ;;
  choose)
    shift
    tessarine_choose "$@"
    ;;
esac
