# Completion of zelvra-cli for bash; install it in /usr/share/bash-completion/completions as "zelvra-cli".

_zelvra_cli() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "probe frame export clips annotations --help --version" -- "$current")
        return
    fi
    case $previous in
    --at | --from | --to) return ;; # a time: no proposals
    --mode)
        mapfile -t COMPREPLY < <(compgen -W "sameAsSource subfolder custom" -- "$current")
        return
        ;;
    --highlight)
        compopt -o nospace 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -W "at=" -- "$current")
        return
        ;;
    esac
    if [[ $current == -* ]]; then
        local options=--help
        case $command in
        frame) options+=" --at --output" ;;
        clips) options+=" --annotations --mode --folder --subfolder --quiet" ;;
        export) options+=" --output --from --to --no-audio --highlight --annotations --quiet" ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
        return
    fi
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
}

complete -F _zelvra_cli zelvra-cli
