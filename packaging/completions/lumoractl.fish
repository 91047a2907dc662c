# Completion of lumoractl for fish. Keys are those that the running tweak knows, plug-ins' own included; values are both
# of a switch, and the number that is set.

function __lumoractl_keys
    lumoractl list 2>/dev/null | string match -gr '^  "([^"\\\\]*)": '
end

# Whether the word after the command is the one to complete.
function __lumoractl_key_is_next
    __fish_seen_subcommand_from get set history; and test (count (string match -v -- '-*' (commandline -opc))) -eq 2
end

# What the key that stands last can be set to.
function __lumoractl_values
    set -l words (string match -v -- '-*' (commandline -opc))
    test (count $words) -eq 3; or return
    set -l value (lumoractl get $words[3] 2>/dev/null)
    switch "$value"
        case true false
            printf '%s\n' true false
        case '*'
            string match -r -- '^[0-9.-]+$' "$value"
    end
end

set -l commands list get set watch archive unarchive plugins plugin search export import diff history undo at restore reset
complete -c lumoractl -f
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a list -d 'Print all settings as one JSON object'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a get -d 'Print one setting as JSON'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a set -d 'Change one setting'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a watch -d 'Print each change of the settings'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a archive -d 'Turn JSON into a keyed archive'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a unarchive -d 'Turn a keyed archive into JSON'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a plugins -d 'List the App View plug-ins'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a plugin -d 'Make a plug-in, judge it, or try it'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a search -d 'Find rows of the pages by their words'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a export -d 'Write settings as a profile'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a import -d 'Change settings to those of a profile'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a diff -d 'Compare profiles'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a history -d 'List the changes that are recorded'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a undo -d 'Take back one change'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a at -d 'Print the settings as they were then'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a restore -d 'Set all settings back to what they were'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -a reset -d 'Set settings back to their defaults'
complete -c lumoractl -n "not __fish_seen_subcommand_from $commands" -l version -d 'Print the version'
complete -c lumoractl -s h -l help -d 'Print help'
complete -c lumoractl -n __lumoractl_key_is_next -a '(__lumoractl_keys)'
complete -c lumoractl -n '__fish_seen_subcommand_from reset' -a '(__lumoractl_keys)'
complete -c lumoractl -n '__fish_seen_subcommand_from set' -a '(__lumoractl_values)'
complete -c lumoractl -n '__fish_seen_subcommand_from list get' -l secrets -d 'Show passcodes'
complete -c lumoractl -n '__fish_seen_subcommand_from archive unarchive' -F
complete -c lumoractl -n '__fish_seen_subcommand_from archive unarchive export' -s o -l output -r -F -d 'What to write'
complete -c lumoractl -n '__fish_seen_subcommand_from plugins' -a '(__fish_complete_directories)'
complete -c lumoractl -n '__fish_seen_subcommand_from plugin; and not __fish_seen_subcommand_from new check run' -a 'new check run'
complete -c lumoractl -n '__fish_seen_subcommand_from plugin; and __fish_seen_subcommand_from new' -l identifier -x -d 'What tells it apart'
complete -c lumoractl -n '__fish_seen_subcommand_from plugin; and __fish_seen_subcommand_from new' -l folder -r -a '(__fish_complete_directories)' -d 'What to make'
complete -c lumoractl -n '__fish_seen_subcommand_from plugin; and __fish_seen_subcommand_from check run' -a '(__fish_complete_directories)'
complete -c lumoractl -n '__fish_seen_subcommand_from plugin; and __fish_seen_subcommand_from check' -l json -d 'Print JSON'
complete -c lumoractl -n '__fish_seen_subcommand_from plugin; and __fish_seen_subcommand_from check' -l strict -d 'Have warnings count as errors'
complete -c lumoractl -n '__fish_seen_subcommand_from plugin; and __fish_seen_subcommand_from check run' -l root -r -a '(__fish_complete_directories)' -d 'What stands for /'
complete -c lumoractl -n '__fish_seen_subcommand_from import diff' -F -a "(lumoractl import --list 2>/dev/null | string replace -r ' +' \t)"
complete -c lumoractl -n '__fish_seen_subcommand_from export' -a '(__lumoractl_keys)'
complete -c lumoractl -n '__fish_seen_subcommand_from export' -l changed -d 'What differs from the defaults'
complete -c lumoractl -n '__fish_seen_subcommand_from export' -l all -d 'All settings'
complete -c lumoractl -n '__fish_seen_subcommand_from export' -l name -x -d 'What people call it'
complete -c lumoractl -n '__fish_seen_subcommand_from import' -l check -d 'Say what is wrong with the file'
complete -c lumoractl -n '__fish_seen_subcommand_from import' -l dry-run -d 'Change nothing'
complete -c lumoractl -n '__fish_seen_subcommand_from import' -l list -d 'List what is shipped'
complete -c lumoractl -n '__fish_seen_subcommand_from watch plugins search import diff history' -l json -d 'Print JSON'
complete -c lumoractl -n '__fish_seen_subcommand_from plugins search export import diff' -l root -r -a '(__fish_complete_directories)' -d 'What stands for /'
complete -c lumoractl -n '__fish_seen_subcommand_from plugins' -l timeout -x -d 'Seconds that each may take'
complete -c lumoractl -n '__fish_seen_subcommand_from search' -l most -x -d 'How many rows at most'
complete -c lumoractl -n '__fish_seen_subcommand_from history' -l since -x -d 'Only those since then'
complete -c lumoractl -n '__fish_seen_subcommand_from history' -l clear -d 'Forget all of them'
complete -c lumoractl -n '__fish_seen_subcommand_from restore' -l dry-run -d 'Only print what would change'
complete -c lumoractl -n '__fish_seen_subcommand_from reset' -l all -d 'All settings'
