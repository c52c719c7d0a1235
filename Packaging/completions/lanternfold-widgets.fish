# Completions of lanternfold-widgets and lanternfold-widget-host for fish.
#
# The program itself is asked what it takes: commands, options, and which of them take a value stand in its
# help.

# The commands below the one that the help of the standard input is of, a line each: name, tab, what it does.
function __lanternfold_widgets_commands
    awk '/^[A-Z].*:$/ { wanted = $0 == "Subcommands:" }
        wanted && /^  [a-z]/ { what = substr($0, 3); sub(/  +/, "\t", what); print what }'
end

# Every name of an option, a line each: name, tab, what it does. With a name, only what stands for its value.
function __lanternfold_widgets_options
    awk -v option="$argv[1]" '/^  -/ {
        what = match($0, /[^ ]  +[^ ]/) ? substr($0, RSTART + RLENGTH - 1) : ""
        value = $0 ~ /^  [^ ]+ [A-Z]/ ? $2 : ""
        count = split($1, names, ",")
        for (i = 1; i <= count; ++i) {
            if (option == "") print names[i] "\t" what
            else if (option == names[i] && value != "") print value
        }
    }'
end

function __lanternfold_widgets_values --argument-names option value current
    switch $option
        case --family
            printf '%s\n' small medium large
        case --scheme
            printf '%s\n' light dark
        case --entry
            printf '%s\n' timeline snapshot placeholder
        case --categories
            __fish_append , internet wlan other cellular
        case --adapter
            echo auto
            command ls /sys/class/net
        case --excluding
            __fish_append , (command ls /sys/class/net)
        case '*'
            switch $value
                case FILE
                    __fish_complete_path $current
                case DIR
                    __fish_complete_directories $current ''
            end
    end
end

# What may stand in the place of a word that is no option.
function __lanternfold_widgets_words --argument-names program help
    echo $help | __lanternfold_widgets_commands
    switch (echo $help | awk '/^[A-Z].*:$/ { wanted = $0 == "Positionals:" } wanted && /^  [a-z]/ { print $2 }')
        case KIND
            echo $help | string match --all --regex '[A-Z][A-Za-z]*Widget\b' | sort -u
        case ACTION
            printf '%s\n' status allow allow-in-use deny reset
        case ID
            $program ctl list --json 2>/dev/null </dev/null | string match --all --regex '(?<="id":")[^"]*'
    end
end

function __lanternfold_widgets
    set --local words (commandline --tokenize --cut-at-cursor --current-process)
    set --local current (commandline --current-token --cut-at-cursor)
    set --local program (string replace --regex '^~/' $HOME/ $words[1])
    type --query $program
    or return
    set --local help ($program --help 2>/dev/null </dev/null | string collect)
    set --local chosen
    for word in $words[2..]
        if echo $help | __lanternfold_widgets_commands | string match --quiet --regex "^"(string escape --style=regex -- $word)"\t"
            set --append chosen $word
            set help ($program $chosen --help 2>/dev/null </dev/null | string collect)
        end
    end

    # The value stands behind the option, or behind an equals sign in the same word.
    set --local option
    set --local before ''
    if string match --quiet -- '--*=*' $current
        set option (string split --max 1 = -- $current)[1]
        set before "$option="
        set current (string split --max 1 = -- $current)[2]
    else if set --query words[2]
        set option $words[-1]
    end
    set --local value
    if string match --quiet -- '-*' $option
        set value (echo $help | __lanternfold_widgets_options $option)
    end
    if test -n "$value"
        for offered in (__lanternfold_widgets_values $option $value $current)
            echo $before$offered
        end
    else if string match --quiet -- '-*' $current
        echo $help | __lanternfold_widgets_options
    else
        __lanternfold_widgets_words $program $help
    end
end

for program in lanternfold-widgets lanternfold-widget-host
    complete --command $program --no-files --arguments '(__lanternfold_widgets)'
end
