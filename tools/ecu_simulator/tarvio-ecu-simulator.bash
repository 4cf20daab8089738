# Completion of tarvio-ecu-simulator for bash.

_tarvio_ecu_simulator() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local options="--help --version --address --control-port --host --receive-port --fsp-port --streams
        --scene --wall-distance --rate --seed --sensors-missing
        --replay --speed --loop --recorded-receive-port --recorded-fsp-port
        --state --calibration --calibration-seconds --status --verbose
        --drop-replies --delay-replies --delay-ms --delay-spread --duplicate-replies
        --corrupt-replies --garbage-replies --stray-replies --drop-stream --duplicate-stream
        --reorder-stream --corrupt-stream --garbage-stream"
    case $previous in
    --streams) mapfile -t COMPREPLY < <(compgen -W "on off" -- "$current"); return ;;
    --scene) mapfile -t COMPREPLY < <(compgen -W "car wall" -- "$current"); return ;;
    --calibration) mapfile -t COMPREPLY < <(compgen -W "finish abort never fail" -- "$current"); return ;;
    --replay | --state) mapfile -t COMPREPLY < <(compgen -f -- "$current"); return ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
}

complete -o filenames -F _tarvio_ecu_simulator tarvio-ecu-simulator
