# For the scripts of this folder: . "$(dirname "$0")/usage.sh"
# The text that a script begins with is its usage.

usage() { # CODE [MESSAGE]: says it, after a message of what was wrong, and ends the script
    [ "$1" = 0 ] || exec >&2
    [ -z "${2:-}" ] || printf '%s: %s\n\n' "${0##*/}" "$2"
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"
    exit "$1"
}

# take_arguments WORD... -- ARGUMENT...: passes when each argument is one of the words; answers --help.
take_arguments() {
    local known=" "
    while [ "$1" != -- ]; do
        known+="$1 "
        shift
    done
    shift
    for argument in "$@"; do
        case $argument in
            -h | --help) usage 0 ;;
            *) [[ $known == *" $argument "* ]] || usage 2 "it takes no \"$argument\"" ;;
        esac
    done
}
