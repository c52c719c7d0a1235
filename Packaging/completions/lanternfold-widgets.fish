# Commands, options and kinds of widgets are offered as the program's own help has them.

# COMMAND...: the help of that command.
function __lanternfold_help
    set -l program (string replace -r '^~' $HOME -- (commandline -opc)[1])
    $program $argv --help 2>/dev/null
end

# HELP...: the commands below it, with what they do.
function __lanternfold_commands
    printf '%s\n' $argv | sed -n '/^Subcommands:/,/^$/s/^  \([^ ]*\) *\(.*\)/\1\t\2/p'
end

# HELP...: its options, with what they mean.
function __lanternfold_options
    printf '%s\n' $argv | string match -r '^  -.*' | while read -l names text
        set -l meaning (string replace -r '^[A-Z,:]* +' '' -- $text)
        for name in (string split , -- $names)
            printf '%s\t%s\n' $name $meaning
        end
    end
end

# OPTION HELP...: what may stand behind it; fails for one that takes no value.
function __lanternfold_values
    switch $argv[1]
        case --family
            printf '%s\n' small medium large
        case --scheme
            printf '%s\n' light dark
        case --entry
            printf '%s\n' timeline snapshot placeholder
        case --categories
            printf '%s\n' internet wlan other cellular
        case --adapter
            printf '%s\n' auto (path basename /sys/class/net/*)
        case --excluding --prefix
            path basename /sys/class/net/*
        case -o --output --file --ca-file --geolocation-table
            __fish_complete_path (commandline -ct)
        case --data-dir
            __fish_complete_directories (commandline -ct) ''
        case '*'
            printf '%s\n' $argv[2..] | string match -qr "^  (-.,)?$argv[1] [A-Z]"
    end
end

function __lanternfold_offers
    set -l words (commandline -opc)[2..]
    set -l commands
    set -l help (__lanternfold_help)
    for word in $words
        if __lanternfold_commands $help | string match -qr -- "^$word\t"
            set -a commands $word
            set help (__lanternfold_help $commands)
        end
    end
    if string match -q -- '-*' "$words[-1]"
        __lanternfold_values $words[-1] $help; and return
    end
    if string match -q -- '-*' (commandline -ct)
        __lanternfold_options $help
        return
    end
    __lanternfold_commands $help
    test "$commands" = location; and printf '%s\n' status allow allow-in-use deny reset
    printf '%s\n' $help | string match -r '^  kind KIND.*' | string match -ar '[A-Za-z]+Widget\b'
end

complete -c lanternfold-widgets -f -a '(__lanternfold_offers)'
complete -c lanternfold-widget-host -f -a '(__lanternfold_offers)'
