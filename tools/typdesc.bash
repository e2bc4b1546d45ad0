# Completion of typdesc for bash.

# The names that an option takes, from the program itself.
_typdesc_rules()
{
    local name
    [[ $1 == --explain ]] && echo all
    "$2" check --rules 2>/dev/null | while read -r name _; do
        echo "$name"
        [[ $1 == -W ]] && echo "no-$name"
    done
}

_typdesc()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} options
    local sections="identification features baudRates limits slots modules parameters blocks diagnostics gsd warnings"
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
        mapfile -t COMPREPLY < <(compgen -W "text json sarif github" -- "${current#=}")
        return
        ;;
    -W | --explain)
        mapfile -t COMPREPLY < <(compgen -W "$(_typdesc_rules "$previous" "$1")" -- "${current#=}")
        return
        ;;
    esac
    if [[ ${COMP_WORDS[1]} == compile && $previous =~ ^(-o|--output)$ || $previous == --save ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -W "-" -- "${current#=}"; compgen -f -- "${current#=}")
        return
    fi
    case ${COMP_WORDS[1]} in
    check)
        options="--recursive --errors-only --werror -W --baseline --write-baseline --fix --diff --format --name --jobs"
        options+=" --rules --explain --help"
        ;;
    compile) options="--output --check --json --help" ;;
    show) options="--ident --recursive --json --section --help" ;;
    diag) options="--ident --recursive --capture --config --dpv1 --no-dpv1 --json --help" ;;
    config)
        options="--ident --recursive --slot --set --watchdog --min-tsdr --groups --sync --freeze --unlocked --load"
        options+=" --save --explain --explain-prm --json --help"
        ;;
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
