# Completion of tarvioctl for bash.

_tarvioctl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="info read write diff monitor record replay envelope calibrate doctor"
    local options="--help --ecu --control-port --receive-port --fsp-port --timeout"
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "$commands --help --version" -- "$current")
        return
    fi
    case $previous in
    --only) mapfile -t COMPREPLY < <(compgen -W "network sequence thresholds positions" -- "$current"); return ;;
    --format) mapfile -t COMPREPLY < <(compgen -W "text jsonl csv" -- "$current"); return ;;
    --sensor | calibrate) mapfile -t COMPREPLY < <(compgen -W "1 2 3 4 5 6 7 8 9 10 11 12" -- "$current"); return ;;
    esac
    case ${COMP_WORDS[1]} in
    read | diff) options+=" --only" ;;
    write) options+=" --only --verify --dry-run" ;;
    monitor) options+=" --measurements --freespaces --format --count --seconds" ;;
    record) options+=" --seconds" ;;
    replay) options+=" --speed --loop --recorded-receive-port --recorded-fsp-port" ;;
    envelope) options+=" --sensor -o --left --right --lut-step --samples" ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}

complete -o filenames -F _tarvioctl tarvioctl
