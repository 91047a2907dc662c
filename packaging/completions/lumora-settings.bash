# Completion of lumora-settings for bash.

_lumora_settings() {
    local word=${COMP_WORDS[COMP_CWORD]}
    local pages="LumoraPreferences AppsController AppsListController AutoUnlockController AUAppsListController PluginsListController
        PluginsListViewController LSSettingsController LSPasscodeSettings ColorPickerController LSDateViewSettings
        FontViewController ChangeLogController"
    COMPREPLY=()
    case ${COMP_WORDS[COMP_CWORD - 1]} in
        --root | --bundle | --tour) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
        --grab | --profile) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        --page | --rows) mapfile -t COMPREPLY < <(compgen -W "$pages" -- "$word") ;;
        --contrast) mapfile -t COMPREPLY < <(compgen -W 'more normal' -- "$word") ;;
        --columns) mapfile -t COMPREPLY < <(compgen -W '1 2' -- "$word") ;;
        --search | --timeout | --text-size | --size) ;;
        --renderer) mapfile -t COMPREPLY < <(compgen -W 'auto software gpu' -- "$word") ;;
        *)
            mapfile -t COMPREPLY < <(compgen -W '--root --bundle --page --grab --tour --lockscreen --rows --index --search --profile --history --timeout
                --verbose --light --dark --contrast --text-size --columns --size --renderer --help --version' -- "$word")
            ;;
    esac
}

complete -o filenames -F _lumora_settings lumora-settings
