# Completes the command line of marlopad in bash.
_marlopad() {
    local cur prev words cword
    _init_completion -n = || return
    case $cur in
    --charset=*)
        mapfile -t COMPREPLY < <(compgen -W 'UTF-8 Shift_JIS EUC-JP ISO-2022-JP' -- "${cur#*=}")
        return
        ;;
    -*)
        mapfile -t COMPREPLY < <(compgen -W '--charset= --new-document --recent-files --wait --help --version' -- "$cur")
        [[ ${COMPREPLY[0]-} == *= ]] && compopt -o nospace
        return
        ;;
    esac
    _filedir
} && complete -F _marlopad marlopad
