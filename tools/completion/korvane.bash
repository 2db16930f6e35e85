# Completion of the korvane command in bash.

# Folders, and the files of the given extensions.
_korvane_files() {
    local extension
    compopt -o filenames
    mapfile -t COMPREPLY < <(
        compgen -d -- "$word"
        for extension; do compgen -f -X "!*.$extension" -- "$word"; done
    )
}

_korvane() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} subcommand=${COMP_WORDS[1]}
    local options='-h --help'
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "info stats sizes check diff convert periodic $options --version" -- "$word")
        return
    fi
    options+=' --json -q --quiet -v --verbose'
    case $subcommand in
    info) options+=' --header' ;;
    stats) options+=' --valid --histogram --by-tag --worst' ;;
    check) options+=' --limit --limits --bad-ids --bad' ;;
    periodic) options+=' --tags --tolerance' ;;
    diff) options+=' --tolerance' ;;
    esac
    case $previous in
    --valid | --tags | --worst | --limit | --tolerance) return ;;
    --limits | --bad-ids) compopt -o default; return ;;
    --bad) _korvane_files vtu; return ;;
    esac
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
        return
    fi
    case $subcommand:$COMP_CWORD in
    info:*) _korvane_files mesh meshb sol solb ;;
    stats:* | check:* | diff:* | sizes:2 | convert:2 | periodic:*) _korvane_files mesh meshb ;;
    sizes:3) _korvane_files sol solb ;;
    convert:*) _korvane_files mesh meshb bdf vtu stl ;;
    esac
}

complete -F _korvane korvane
