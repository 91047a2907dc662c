# Completion of lumoractl for bash. Keys are those that the running tweak knows, plug-ins' own included; values are both
# of a switch, and the number that is set.

_lumoractl_keys() {
    lumoractl list 2>/dev/null | sed -n 's/^  "\([^"\\]*\)": .*/\1/p'
}

_lumoractl_profiles() {
    lumoractl import --list 2>/dev/null | sed 's/ .*//'
}

_lumoractl_values() {
    local value
    value=$(lumoractl get "$1" 2>/dev/null)
    case $value in true | false) value='true false' ;; *[!0-9.-]*) value= ;; esac
    printf '%s\n' "$value"
}

_lumoractl() {
    local word=${COMP_WORDS[COMP_CWORD]} command='' key='' i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            -*) ;;
            *) if [[ -z $command ]]; then command=${COMP_WORDS[i]}; elif [[ $command != plugin || -z $key ]]; then key=${COMP_WORDS[i]}; fi ;;
        esac
    done
    COMPREPLY=()
    if [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'list get set watch archive unarchive plugins plugin search export import diff history undo at restore reset --help --version' -- "$word")
        return
    fi
    if [[ $word == -* ]]; then
        local options=--help
        case $command in
            list | get) options+=' --secrets' ;;
            watch) options+=' --json' ;;
            archive | unarchive) options+=' --output -o' ;;
            plugins) options+=' --json --root --timeout' ;;
            plugin) case $key in
                new) options+=' --identifier --folder' ;;
                check) options+=' --json --strict --root' ;;
                run) options+=' --root' ;;
            esac ;;
            search) options+=' --json --root --most' ;;
            export) options+=' --changed --all --name --output -o --root' ;;
            import) options+=' --check --dry-run --list --json --root' ;;
            diff) options+=' --json --root' ;;
            history) options+=' --json --since --clear' ;;
            restore) options+=' --dry-run' ;;
            reset) options+=' --all' ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
        return
    fi
    case $command in
        get | set)
            if [[ -z $key ]]; then
                mapfile -t COMPREPLY < <(compgen -W "$(_lumoractl_keys)" -- "$word")
            elif [[ $command == set && ${COMP_WORDS[COMP_CWORD - 1]} == "$key" ]]; then
                mapfile -t COMPREPLY < <(compgen -W "$(_lumoractl_values "$key")" -- "$word")
            fi
            ;;
        export) mapfile -t COMPREPLY < <(compgen -W "$(_lumoractl_keys)" -- "$word") ;;
        import | diff)
            [[ $command == import && -n $key ]] ||
                mapfile -t COMPREPLY < <(compgen -f -W "$(_lumoractl_profiles)" -- "$word")
            ;;
        history | reset)
            if [[ -z $key || $command == reset ]]; then
                mapfile -t COMPREPLY < <(compgen -W "$(_lumoractl_keys)" -- "$word")
            fi
            ;;
        plugin)
            if [[ -z $key ]]; then
                mapfile -t COMPREPLY < <(compgen -W 'new check run' -- "$word")
            elif [[ $key != new || ${COMP_WORDS[COMP_CWORD - 1]} == --folder ]]; then
                mapfile -t COMPREPLY < <(compgen -d -- "$word")
            fi
            ;;
        archive | unarchive | plugins) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    esac
}

complete -o filenames -F _lumoractl lumoractl
