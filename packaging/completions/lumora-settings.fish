# Completion of lumora-settings for fish.

set -l pages LumoraPreferences AppsController AppsListController AutoUnlockController AUAppsListController PluginsListController \
    PluginsListViewController LSSettingsController LSPasscodeSettings ColorPickerController LSDateViewSettings \
    FontViewController ChangeLogController
complete -c lumora-settings -f
complete -c lumora-settings -s h -l help -d 'Print help'
complete -c lumora-settings -l version -d 'Print the version'
complete -c lumora-settings -l root -r -a '(__fish_complete_directories)' -d 'What stands for /'
complete -c lumora-settings -l bundle -r -a '(__fish_complete_directories)' -d 'The settings bundle'
complete -c lumora-settings -l page -x -a "$pages" -d 'Open at this page class, upon those that lead there'
complete -c lumora-settings -l grab -r -F -d 'Save a picture of the page'
complete -c lumora-settings -l tour -r -a '(__fish_complete_directories)' -d 'Save pictures of every page'
complete -c lumora-settings -l lockscreen -d 'Show the lock screen in the picture'
complete -c lumora-settings -l rows -x -a "$pages" -d 'Print a page as JSON'
complete -c lumora-settings -l index -d 'Print what can be found on all pages'
complete -c lumora-settings -l search -x -d 'Open the search, and look for these words'
complete -c lumora-settings -l profile -r -F -d 'Show what a profile would change, and offer to take it'
complete -c lumora-settings -l history -d 'Show what has been changed'
complete -c lumora-settings -l timeout -x -d 'Seconds that it may take'
complete -c lumora-settings -l verbose -d 'Write logs to standard error too'
complete -c lumora-settings -l light -d 'Light colours'
complete -c lumora-settings -l dark -d 'Dark colours'
complete -c lumora-settings -l contrast -x -a 'more normal' -d 'How much texts stand out'
complete -c lumora-settings -l text-size -x -d 'How large texts are, 100 as usual'
complete -c lumora-settings -l columns -x -a '1 2' -d 'How many columns a wide window has'
complete -c lumora-settings -l size -x -d 'The size of the window'
complete -c lumora-settings -l renderer -x -a 'auto software gpu' -d 'What draws'
