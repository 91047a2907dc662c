# Completion of lumora-lockscreen for bash.

_lumora_lockscreen() {
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    case ${COMP_WORDS[COMP_CWORD - 1]} in
        --root | --tour) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
        --grab | --play | --settings | --scenes) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        --wallpaper) mapfile -t COMPREPLY < <(compgen -f -W 'dusk day night' -- "$word") ;;
        --surface) mapfile -t COMPREPLY < <(compgen -W 'N A V P O' -- "$word") ;;
        --size | --passcode | --time | --battery | --text-size | --idle) ;;
        --renderer) mapfile -t COMPREPLY < <(compgen -W 'auto software gpu' -- "$word") ;;
        *)
            mapfile -t COMPREPLY < <(compgen -W '--root --landscape --size --passcode --wallpaper --surface --time --battery
                --text-size --play --idle --settings --state --grab --tour --scenes --log --renderer --help --version' -- "$word")
            ;;
    esac
}

complete -o filenames -F _lumora_lockscreen lumora-lockscreen
