# Completion of lumora-tweak for bash.

_lumora_tweak() {
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    case ${COMP_WORDS[COMP_CWORD - 1]} in
        --root) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
        --settings) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        --omit) ;;
        *) mapfile -t COMPREPLY < <(compgen -W '--root --settings --omit --no-history --verbose --help --version' -- "$word") ;;
    esac
}

complete -o filenames -F _lumora_tweak lumora-tweak
