# Completion of hwquery for bash: commands, options, paths from the catalogue, subscripts from the machine (as root).
_hwquery() {
    local word=${COMP_LINE:0:COMP_POINT} command=${COMP_WORDS[1]} help
    word=${word##* }
    case $command in /*) command=get ;; esac
    case $COMP_CWORD:$word in
        1:[!/]* | 1:)
            help=$("${COMP_WORDS[0]}" --help 2> /dev/null | sed -n '/^Subcommands/,/^$/s/^  \([a-z-]*\) .*/\1/p')
            mapfile -t COMPREPLY < <(compgen -W "$help" -- "$word")
            return ;;
        *:-*)
            help=$("${COMP_WORDS[0]}" "$command" --help 2> /dev/null | grep -o -e '--[a-z-]*')
            mapfile -t COMPREPLY < <(compgen -W "$help" -- "$word")
            return ;;
    esac
    case $command:$word in
        check-config:*) compopt -o default; COMPREPLY=() ;;
        sel:*) mapfile -t COMPREPLY < <(compgen -W 'list info clear' -- "$word") ;;
        get:/* | set:/* | list:/*)
            mapfile -t COMPREPLY < <("${COMP_WORDS[0]}" complete "${command/list/get}" "$word" 2> /dev/null)
            # the path goes on behind a slash or a bracket
            [ ${#COMPREPLY[@]} -eq 1 ] && case ${COMPREPLY[0]} in *[/[]) compopt -o nospace ;; esac ;;
    esac
}
complete -F _hwquery hwquery
