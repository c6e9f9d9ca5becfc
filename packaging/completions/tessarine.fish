# Completions of tessarine, tessarine-desktop and background-window-capture for fish.

set -l commands close choose-folder choose-path click-point type-text press-key list-windows \
    list-background-panels inspect-open-dialog

complete -c tessarine -f
complete -c tessarine -n "not __fish_seen_subcommand_from $commands" -a close -d 'Close the open panels'
complete -c tessarine -n "not __fish_seen_subcommand_from $commands" -a choose-folder -d 'Choose a folder'
complete -c tessarine -n "not __fish_seen_subcommand_from $commands" -a choose-path -d 'Choose a file or folder'
complete -c tessarine -n "not __fish_seen_subcommand_from $commands" -a click-point -d 'Click once in the process'
complete -c tessarine -n "not __fish_seen_subcommand_from $commands" -a type-text -d 'Type a text into the process'
complete -c tessarine -n "not __fish_seen_subcommand_from $commands" -a press-key -d 'Press a key in the process'
complete -c tessarine -n "not __fish_seen_subcommand_from $commands" -a list-windows -d 'Print the windows'
complete -c tessarine -n "not __fish_seen_subcommand_from $commands" -a list-background-panels -d 'Print the captured panel windows'
complete -c tessarine -n "not __fish_seen_subcommand_from $commands" -a inspect-open-dialog -d 'Print the open panels and their elements'
complete -c tessarine -l help -d 'Print the usage'

complete -c tessarine -n "__fish_seen_subcommand_from $commands" -l pid -x -d 'Process identifier of the browser'
complete -c tessarine -n "__fish_seen_subcommand_from $commands" -l timeout -x -d 'Seconds to wait for a panel'
complete -c tessarine -n "__fish_seen_subcommand_from $commands" -l quiet -d 'Accepted, changes nothing'
complete -c tessarine -n "__fish_seen_subcommand_from choose-folder choose-path" -l path -r -F -d 'What to choose'
complete -c tessarine -n "__fish_seen_subcommand_from choose-folder" -l prefer-background-panel -d 'Try the captured panel first'
complete -c tessarine -n "__fish_seen_subcommand_from choose-folder choose-path" -l verify -d 'Prove what is chosen, or fail'
complete -c tessarine -n "__fish_seen_subcommand_from close choose-folder" -l strict-background -d 'Never leave the background'
complete -c tessarine -n "__fish_seen_subcommand_from close choose-folder" -l temporary-foreground -d 'Bring the browser to the front meanwhile'
complete -c tessarine -n "__fish_seen_subcommand_from close choose-folder choose-path list-background-panels" -l exclude-window-id -x -d 'Leave a panel window out of account'
complete -c tessarine -n "__fish_seen_subcommand_from click-point" -l x -x -d 'Points from the left'
complete -c tessarine -n "__fish_seen_subcommand_from click-point" -l y -x -d 'Points from the top'
complete -c tessarine -n "__fish_seen_subcommand_from type-text" -l text -x -d 'Text to type'
complete -c tessarine -n "__fish_seen_subcommand_from press-key" -l key -x -d 'Key to press' \
    -a 'return enter delete backspace escape esc cmd-a command-a cmd-shift-g command-shift-g'

set -l desktop_commands run serve state replay list import

complete -c tessarine-desktop -f
complete -c tessarine-desktop -n "not __fish_seen_subcommand_from $desktop_commands" -a run -d 'Run a command on a desktop'
complete -c tessarine-desktop -n "not __fish_seen_subcommand_from $desktop_commands" -a serve -d 'Keep a desktop for many commands'
complete -c tessarine-desktop -n "not __fish_seen_subcommand_from $desktop_commands" -a state -d 'Print what a desktop looks like'
complete -c tessarine-desktop -n "not __fish_seen_subcommand_from $desktop_commands" -a replay -d 'Make a page of a record'
complete -c tessarine-desktop -n "not __fish_seen_subcommand_from $desktop_commands" -a list -d 'Name the scenarios'
complete -c tessarine-desktop -n "not __fish_seen_subcommand_from $desktop_commands" -a import -d 'Make a scenario from what a Mac printed'
complete -c tessarine-desktop -l help -d 'Print the usage'
complete -c tessarine-desktop -n '__fish_seen_subcommand_from run serve' -F \
    -a '(tessarine-desktop list 2>/dev/null | string replace -r " +" \t)'
complete -c tessarine-desktop -n '__fish_seen_subcommand_from run serve' -l record -r -F -d 'Write what happened'
complete -c tessarine-desktop -n '__fish_seen_subcommand_from run serve' -l record-requests -d 'And what was only asked'
complete -c tessarine-desktop -n '__fish_seen_subcommand_from run' -l judge -d 'Status 3 unless the verdict is true'
complete -c tessarine-desktop -n '__fish_seen_subcommand_from serve state' -l socket -r -F -d 'Where programs find the desktop'
complete -c tessarine-desktop -n '__fish_seen_subcommand_from import replay' -F
complete -c tessarine-desktop -n '__fish_seen_subcommand_from import' -l windows -r -F -d 'What list-windows printed'
complete -c tessarine-desktop -n '__fish_seen_subcommand_from import' -l keep-names -d 'Leave names as they are'

complete -c background-window-capture -f
set -l capture_commands list capture permissions
complete -c background-window-capture -n "not __fish_seen_subcommand_from $capture_commands" -a list -d 'Print the windows'
complete -c background-window-capture -n "not __fish_seen_subcommand_from $capture_commands" -a capture -d 'Write a snapshot'
complete -c background-window-capture -n "not __fish_seen_subcommand_from $capture_commands" -a permissions -d 'Say what is permitted'
complete -c background-window-capture -l help -d 'Print the usage'
complete -c background-window-capture -n '__fish_seen_subcommand_from capture' -l window-id -x -d 'Number of the window'
complete -c background-window-capture -n '__fish_seen_subcommand_from capture' -l out -r -F -d 'File to write'
complete -c background-window-capture -n '__fish_seen_subcommand_from permissions' -l json -d 'Print one JSON object'
