# Completion of typdesc for bash.
_typdesc()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} options
    local sections="identification features baudRates limits slots modules parameters blocks diagnostics warnings"
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "check compile show diag config --help --version" -- "$current")
        return
    fi
    [[ $previous == "=" ]] && previous=${COMP_WORDS[COMP_CWORD - 2]} # "=" parts words
    case $previous in
    --section)
        mapfile -t COMPREPLY < <(compgen -W "$sections" -- "$current")
        return
        ;;
    --format)
        mapfile -t COMPREPLY < <(compgen -W "text json sarif" -- "${current#=}")
        return
        ;;
    esac
    if [[ ${COMP_WORDS[1]} == compile && $previous =~ ^(-o|--output)$ ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -W "-" -- "${current#=}"; compgen -f -- "${current#=}")
        return
    fi
    case ${COMP_WORDS[1]} in
    check) options="--recursive --errors-only --format --help" ;;
    compile) options="--output --check --help" ;;
    show) options="--json --section --help" ;;
    diag) options="--json --help" ;;
    config) options="--slot --set --json --help" ;;
    *) return ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
        return
    fi
    compopt -o filenames 2>/dev/null
    if [[ ${COMP_WORDS[1]} == compile ]]; then
        mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.[gG][sS]?' -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}
complete -F _typdesc typdesc
