# shellcheck shell=bash
# Completion of the command line of orvane. At the end of the installed file stands
# _orvane_describe, which is made from the tool. It sets for a command, such as "export otlp", or for
# none:
#   below      the commands below it
#   options    its options
#   values     the words for the value of each option that has one, or -f for files
#   arguments  the same for the arguments that are no options
#   repeated   how many of the last arguments may come again and again

_orvane() {
    local word=${COMP_WORDS[COMP_CWORD]} each before='' command='' option='' place=0 i words
    local below options repeated
    local -a arguments
    local -A values
    COMPREPLY=()
    _orvane_describe ''
    # bash takes ":" and "=" for words of their own.
    for ((i = 1; i < COMP_CWORD; ++i)); do
        each=${COMP_WORDS[i]}
        if [[ $each == = || $each == : || $before == : ]]; then
            :
        elif [[ -n $option ]]; then
            option=
        elif [[ $each == -* ]]; then
            if [[ -v values[$each] ]]; then option=$each; fi
        elif [[ -n $below ]]; then
            command+=${command:+ }$each
            _orvane_describe "$command"
        else
            place=$((place + 1))
        fi
        before=$each
    done
    if [[ $word == : || $before == : ]]; then return; fi
    if [[ $word == = ]]; then word=; fi

    if ((repeated > 0 && place >= ${#arguments[@]})); then
        place=$((${#arguments[@]} - repeated + (place - ${#arguments[@]}) % repeated))
    fi
    if [[ -n $option ]]; then
        words=${values[$option]}
    elif [[ $word == -* ]]; then
        words=$options
    else
        words=${below:-${arguments[place]-}}
    fi
    if [[ $words == -f ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        compopt -o filenames 2>/dev/null
    else
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    fi
}
complete -F _orvane orvane
