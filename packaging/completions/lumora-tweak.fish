# Completion of lumora-tweak for fish.

complete -c lumora-tweak -f
complete -c lumora-tweak -l help -d 'Print help'
complete -c lumora-tweak -l version -d 'Print the version'
complete -c lumora-tweak -l root -r -a '(__fish_complete_directories)' -d 'What stands for /'
complete -c lumora-tweak -l settings -r -F -d 'Where the settings are kept'
complete -c lumora-tweak -l omit -x -d 'Answer as if this key were not set'
complete -c lumora-tweak -l no-history -d 'Record no changes'
complete -c lumora-tweak -l verbose -d 'Write a line for each message'
