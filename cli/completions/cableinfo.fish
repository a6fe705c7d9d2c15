# fish completion of cableinfo
# Written by scripts/command_files.py from the help of the program.

function __cableinfo_dumps
    set -l word (commandline -ct | string replace -r '^--[a-z-]+=' '')
    set -l page (string match -r '^[0-9a-z]+:' -- $word)
    if test -n "$page"
        printf "$page%s\n" (__fish_complete_path (string replace -- $page '' $word))
    else
        printf '%s:\tpage\n' lower 00 01 02 03 04 10 11 12 13 14 20 21 22 23 24 25 26 27 28 2c 2d 2e 2f a0 a2
        __fish_complete_path $word
    end
end

function __cableinfo_columns
    set -l program (commandline -opc)[1]
    __fish_append , ($program columns 2>/dev/null | awk 'NR > 1 { print $2 }')
end

function __cableinfo_rules
    set -l program (commandline -opc)[1]
    set -l rules ($program check --rules 2>/dev/null | awk 'NR > 1 { print $1 }')
    if string match -q '*=*' -- (commandline -ct | string replace -r '^--[a-z-]+=' '')
        printf '%s\n' $rules={off,unknown,warning,critical}
    else
        printf '%s=\n' $rules
    end
end

complete -c cableinfo -f
complete -c cableinfo -n __fish_use_subcommand -l version -d 'show the version'

complete -c cableinfo -n __fish_use_subcommand -a table -d 'write the CSV table, one row per port'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -F
complete -c cableinfo -n '__fish_seen_subcommand_from table' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l module -x -a '(__cableinfo_dumps)' -d 'read dumps of module memories instead of port records'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l port -x -d 'only ports with this number'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l guid -x -d 'only ports with this port GUID or node GUID'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l label -x -d 'only ports whose label matches this pattern'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -s o -l output -r -F -d 'write to this file, which is replaced when the output is complete'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l strict -d 'stop at the first bad port'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -s j -l jobs -x -d 'decode with this many threads'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l no-files -d 'refuse port records that name files, for untrusted input'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l all-messages -d 'show all messages, not only the first 20 of each kind for an input'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -s q -l quiet -d 'show no progress meter, remarks or summary'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l no-header -d 'write the rows only'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l rfc4180 -d 'write CSV for any reader'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l json -d 'write one JSON object per row'
complete -c cableinfo -n '__fish_seen_subcommand_from table' -l columns -x -a '(__cableinfo_columns)' -d 'write only these columns, in this order'

complete -c cableinfo -n __fish_use_subcommand -a report -d 'write the text report, one block per port'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -F
complete -c cableinfo -n '__fish_seen_subcommand_from report' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -l module -x -a '(__cableinfo_dumps)' -d 'read dumps of module memories instead of port records'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -l port -x -d 'only ports with this number'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -l guid -x -d 'only ports with this port GUID or node GUID'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -l label -x -d 'only ports whose label matches this pattern'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -s o -l output -r -F -d 'write to this file, which is replaced when the output is complete'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -l strict -d 'stop at the first bad port'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -s j -l jobs -x -d 'decode with this many threads'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -l no-files -d 'refuse port records that name files, for untrusted input'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -l all-messages -d 'show all messages, not only the first 20 of each kind for an input'
complete -c cableinfo -n '__fish_seen_subcommand_from report' -s q -l quiet -d 'show no progress meter, remarks or summary'

complete -c cableinfo -n __fish_use_subcommand -a export -d 'write the values, one JSON object per port'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -F
complete -c cableinfo -n '__fish_seen_subcommand_from export' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -l module -x -a '(__cableinfo_dumps)' -d 'read dumps of module memories instead of port records'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -l port -x -d 'only ports with this number'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -l guid -x -d 'only ports with this port GUID or node GUID'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -l label -x -d 'only ports whose label matches this pattern'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -s o -l output -r -F -d 'write to this file, which is replaced when the output is complete'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -l strict -d 'stop at the first bad port'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -s j -l jobs -x -d 'decode with this many threads'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -l no-files -d 'refuse port records that name files, for untrusted input'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -l all-messages -d 'show all messages, not only the first 20 of each kind for an input'
complete -c cableinfo -n '__fish_seen_subcommand_from export' -s q -l quiet -d 'show no progress meter, remarks or summary'

complete -c cableinfo -n __fish_use_subcommand -a check -d 'judge the ports'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -F
complete -c cableinfo -n '__fish_seen_subcommand_from check' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l module -x -a '(__cableinfo_dumps)' -d 'read dumps of module memories instead of port records'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l port -x -d 'only ports with this number'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l guid -x -d 'only ports with this port GUID or node GUID'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l label -x -d 'only ports whose label matches this pattern'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -s o -l output -r -F -d 'write to this file, which is replaced when the output is complete'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l strict -d 'stop at the first bad port'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -s j -l jobs -x -d 'decode with this many threads'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l no-files -d 'refuse port records that name files, for untrusted input'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l all-messages -d 'show all messages, not only the first 20 of each kind for an input'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -s q -l quiet -d 'show no progress meter, remarks or summary'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l set -x -a '(__cableinfo_rules)' -d 'set the severity'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l config -r -F -d 'read settings of rules from this file, one per line'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l json -d 'write one JSON object per port and a summary'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l plugin -d 'write one line for a monitoring system'
complete -c cableinfo -n '__fish_seen_subcommand_from check' -l rules -d 'list the rules and their settings, and exit'

complete -c cableinfo -n __fish_use_subcommand -a diff -d 'compare two states of the same ports'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -F
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l json -d 'write one JSON object per port that changed and a summary'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l power-tolerance -x -d 'report powers that changed by more than this, in dB'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l temperature-tolerance -x -d 'report temperatures that changed by more than this, in C'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l bias-tolerance -x -d 'report bias currents that changed by more than this, in %'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l set -x -a '(__cableinfo_rules)' -d 'set the severity'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l config -r -F -d 'read settings of rules from this file, one per line'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l port -x -d 'only ports with this number'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l guid -x -d 'only ports with this port GUID or node GUID'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l label -x -d 'only ports whose label matches this pattern'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -s o -l output -r -F -d 'write to this file, which is replaced when the output is complete'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l strict -d 'stop at the first bad port'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -s j -l jobs -x -d 'decode with this many threads'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l no-files -d 'refuse port records that name files, for untrusted input'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -l all-messages -d 'show all messages, not only the first 20 of each kind for an input'
complete -c cableinfo -n '__fish_seen_subcommand_from diff' -s q -l quiet -d 'show no progress meter, remarks or summary'

complete -c cableinfo -n __fish_use_subcommand -a metrics -d 'write OpenMetrics text for a monitoring system'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -F
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -l module -x -a '(__cableinfo_dumps)' -d 'read dumps of module memories instead of port records'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -l port -x -d 'only ports with this number'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -l guid -x -d 'only ports with this port GUID or node GUID'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -l label -x -d 'only ports whose label matches this pattern'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -s o -l output -r -F -d 'write to this file, which is replaced when the output is complete'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -l strict -d 'stop at the first bad port'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -s j -l jobs -x -d 'decode with this many threads'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -l no-files -d 'refuse port records that name files, for untrusted input'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -l all-messages -d 'show all messages, not only the first 20 of each kind for an input'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -s q -l quiet -d 'show no progress meter, remarks or summary'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -l set -x -a '(__cableinfo_rules)' -d 'set the severity'
complete -c cableinfo -n '__fish_seen_subcommand_from metrics' -l config -r -F -d 'read settings of rules from this file, one per line'

complete -c cableinfo -n __fish_use_subcommand -a page -d 'write one HTML page that shows the ports'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -F
complete -c cableinfo -n '__fish_seen_subcommand_from page' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -l module -x -a '(__cableinfo_dumps)' -d 'read dumps of module memories instead of port records'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -l port -x -d 'only ports with this number'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -l guid -x -d 'only ports with this port GUID or node GUID'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -l label -x -d 'only ports whose label matches this pattern'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -s o -l output -r -F -d 'write to this file, which is replaced when the output is complete'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -l strict -d 'stop at the first bad port'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -s j -l jobs -x -d 'decode with this many threads'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -l no-files -d 'refuse port records that name files, for untrusted input'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -l all-messages -d 'show all messages, not only the first 20 of each kind for an input'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -s q -l quiet -d 'show no progress meter, remarks or summary'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -l set -x -a '(__cableinfo_rules)' -d 'set the severity'
complete -c cableinfo -n '__fish_seen_subcommand_from page' -l config -r -F -d 'read settings of rules from this file, one per line'

complete -c cableinfo -n __fish_use_subcommand -a store -d 'add a snapshot to an SQLite file'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -F
complete -c cableinfo -n '__fish_seen_subcommand_from store' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l module -x -a '(__cableinfo_dumps)' -d 'read dumps of module memories instead of port records'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l port -x -d 'only ports with this number'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l guid -x -d 'only ports with this port GUID or node GUID'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l label -x -d 'only ports whose label matches this pattern'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l strict -d 'stop at the first bad port'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -s j -l jobs -x -d 'decode with this many threads'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l no-files -d 'refuse port records that name files, for untrusted input'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l all-messages -d 'show all messages, not only the first 20 of each kind for an input'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -s q -l quiet -d 'show no progress meter, remarks or summary'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l set -x -a '(__cableinfo_rules)' -d 'set the severity'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l config -r -F -d 'read settings of rules from this file, one per line'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l taken-at -x -d 'when the ports were read, as 2026-01-31T12:00:00Z'
complete -c cableinfo -n '__fish_seen_subcommand_from store' -l keep -x -d 'keep only this many snapshots, the newest'

complete -c cableinfo -n __fish_use_subcommand -a module -d 'write the contents of module memories as text or JSON'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -a '(__cableinfo_dumps)'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -l module -x -a '(__cableinfo_dumps)' -d 'read dumps of module memories instead of port records'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -l port -x -d 'only ports with this number'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -l guid -x -d 'only ports with this port GUID or node GUID'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -l label -x -d 'only ports whose label matches this pattern'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -s o -l output -r -F -d 'write to this file, which is replaced when the output is complete'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -l strict -d 'stop at the first bad port'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -s j -l jobs -x -d 'decode with this many threads'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -l no-files -d 'refuse port records that name files, for untrusted input'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -l all-messages -d 'show all messages, not only the first 20 of each kind for an input'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -s q -l quiet -d 'show no progress meter, remarks or summary'
complete -c cableinfo -n '__fish_seen_subcommand_from module' -l json -d 'write one JSON object per module'

complete -c cableinfo -n __fish_use_subcommand -a read -d 'read the modules of this machine and write port records'
complete -c cableinfo -n '__fish_seen_subcommand_from read' -a '(__cableinfo_nothing)'
complete -c cableinfo -n '__fish_seen_subcommand_from read' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from read' -l scan -d 'list the ports without reading modules'
complete -c cableinfo -n '__fish_seen_subcommand_from read' -l watch -x -d 'read again at this interval'
complete -c cableinfo -n '__fish_seen_subcommand_from read' -l timeout -x -d 'wait this long for a page'
complete -c cableinfo -n '__fish_seen_subcommand_from read' -l sysfs -r -F -d 'look for ports here instead of in /sys'
complete -c cableinfo -n '__fish_seen_subcommand_from read' -s o -l output -r -F -d 'write to this file, which is replaced when the output is complete'
complete -c cableinfo -n '__fish_seen_subcommand_from read' -s q -l quiet -d 'show no remarks and no summary'

complete -c cableinfo -n __fish_use_subcommand -a columns -d 'list the columns of the table'
complete -c cableinfo -n '__fish_seen_subcommand_from columns' -s h -l help -d 'print this help message and exit'
complete -c cableinfo -n '__fish_seen_subcommand_from columns' -l json -d 'write one JSON object per column'
