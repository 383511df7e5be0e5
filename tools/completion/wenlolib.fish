# Completion of wenlolib for fish.
set -l calls verify decode rows collect diff explain preview record list report forget path doctor init help
set -l none "not __fish_seen_subcommand_from $calls"
set -l files '__fish_seen_subcommand_from verify decode rows collect diff report'
set -l contents '__fish_seen_subcommand_from preview record; and __fish_seen_subcommand_from app printer'
set -l kinds '__fish_seen_subcommand_from explain preview record; and not __fish_seen_subcommand_from app printer'

# Files only where the call takes some.
complete -c wenlolib -f
complete -c wenlolib -n $files -F
complete -c wenlolib -n $contents -F

complete -c wenlolib -l root -xa '(__fish_complete_directories)' -d 'Folder to use as the root'
complete -c wenlolib -l color -xa 'auto always never' -d 'Use colours'
complete -c wenlolib -l exit-zero -d 'Exit with 0 where it would be 1'
complete -c wenlolib -s h -l help -d 'Show help'
complete -c wenlolib -n $none -s V -l version -d 'Show the version'
complete -c wenlolib -n $kinds -a app -d 'Application usage'
complete -c wenlolib -n $kinds -a printer -d 'A printer log'

complete -c wenlolib -n $none -a verify -d 'Are these documents sound?'
complete -c wenlolib -n $none -a decode -d 'What do they say?'
complete -c wenlolib -n $none -a rows -d 'A row for each document'
complete -c wenlolib -n $none -a collect -d 'The same in a database'
complete -c wenlolib -n $none -a diff -d 'What differs between two documents?'
complete -c wenlolib -n $none -a explain -d 'Is a record allowed now?'
complete -c wenlolib -n $none -a preview -d 'The exact document that a record would write'
complete -c wenlolib -n $none -a record -d 'Hand a record to the library'
complete -c wenlolib -n $none -a list -d 'What is recorded about you'
complete -c wenlolib -n $none -a report -d 'The same as a page'
complete -c wenlolib -n $none -a forget -d 'Delete it'
complete -c wenlolib -n $none -a path -d 'The folders that it lies in'
complete -c wenlolib -n $none -a doctor -d 'Is the installation healthy?'
complete -c wenlolib -n $none -a init -d 'Make the folders that a host provides'
complete -c wenlolib -n $none -a help -d 'More about a subcommand'
complete -c wenlolib -n '__fish_seen_subcommand_from help' -a 'verify decode rows collect diff explain preview record list report forget path doctor init'

complete -c wenlolib -n '__fish_seen_subcommand_from verify' -l json -d 'One JSON object for each document'
complete -c wenlolib -n '__fish_seen_subcommand_from verify' -s q -l quiet -d 'Only documents that are not sound'
complete -c wenlolib -n '__fish_seen_subcommand_from decode' -l json -d 'One JSON object for each document'
complete -c wenlolib -n '__fish_seen_subcommand_from decode' -l contents -d 'Only the decrypted contents'
complete -c wenlolib -n '__fish_seen_subcommand_from decode' -l redact -d 'Without identifiers'
complete -c wenlolib -n '__fish_seen_subcommand_from verify' -l list -d 'Only the paths of documents that are not sound'
set -l reading '__fish_seen_subcommand_from verify decode rows collect'
complete -c wenlolib -n $reading -l files-from -r -d 'A file with paths'
complete -c wenlolib -n $reading -s 0 -l null -d 'Paths end in NUL'
complete -c wenlolib -n $reading -s j -l jobs -x -d 'Documents at a time'
complete -c wenlolib -n '__fish_seen_subcommand_from rows' -l csv -d 'CSV instead of JSON Lines'
complete -c wenlolib -n '__fish_seen_subcommand_from collect' -l into -r -d 'The database'
complete -c wenlolib -n '__fish_seen_subcommand_from collect' -l show -d 'Answer the common questions'
complete -c wenlolib -n '__fish_seen_subcommand_from rows collect' -l redact -d 'Without identifiers'
complete -c wenlolib -n '__fish_seen_subcommand_from diff' -l json -d 'One JSON object'
set -l choosing '__fish_seen_subcommand_from list forget'
complete -c wenlolib -n $choosing -l since -x -d 'From this day on'
complete -c wenlolib -n $choosing -l until -x -d 'Up to this day'
complete -c wenlolib -n $choosing -l kind -xa 'app printer' -d 'Kind of record'
complete -c wenlolib -n $choosing -l printer -x -d 'Device identifier, serial number or name'
complete -c wenlolib -n '__fish_seen_subcommand_from list' -l json -d 'One JSON object for each record'
complete -c wenlolib -n '__fish_seen_subcommand_from list' -l contents -d 'With the contents'
complete -c wenlolib -n '__fish_seen_subcommand_from report' -l redact -d 'Without identifiers'
complete -c wenlolib -n '__fish_seen_subcommand_from report' -l force -d 'Replace the file'
complete -c wenlolib -n '__fish_seen_subcommand_from forget' -l all -d 'All records'
complete -c wenlolib -n '__fish_seen_subcommand_from forget' -l identifier -d 'The identifier of all records'
complete -c wenlolib -n '__fish_seen_subcommand_from forget' -l yes -d 'Do not ask'
complete -c wenlolib -n '__fish_seen_subcommand_from doctor' -l json -d 'One JSON object for each finding'
complete -c wenlolib -n '__fish_seen_subcommand_from doctor' -l clean -d 'Remove unfinished files'
complete -c wenlolib -n '__fish_seen_subcommand_from doctor' -l plugin -r -d 'Examine another plug-in'
complete -c wenlolib -n '__fish_seen_subcommand_from init' -l sample-preferences -d 'Also make a preference file'
complete -c wenlolib -n '__fish_seen_subcommand_from init' -l agree -d 'The user has agreed'
complete -c wenlolib -n '__fish_seen_subcommand_from init' -l force -d 'In a file that is there as well'

set -l app '; and __fish_seen_subcommand_from app'
set -l printer '; and __fish_seen_subcommand_from printer'
for kind in $app $printer
    set -l explain "__fish_seen_subcommand_from explain$kind"
    complete -c wenlolib -n $explain -l os -x -d 'OS version'
    complete -c wenlolib -n $explain -l date -x -d 'Time'
    complete -c wenlolib -n $explain -l library-version -x -d 'Library version'
    complete -c wenlolib -n $explain -l preferences -r -d 'Preference file'
    complete -c wenlolib -n $explain -l support-list -r -d 'Support version list'
    complete -c wenlolib -n $explain -l json -d 'One JSON object'
    for call in preview record
        set -l both "__fish_seen_subcommand_from $call$kind"
        complete -c wenlolib -n $both -l name -x -d 'Name of the record'
        complete -c wenlolib -n $both -l option -x -d 'Option word'
    end
    complete -c wenlolib -n "__fish_seen_subcommand_from preview$kind" -l bytes -d 'Only the bytes of the document'
    complete -c wenlolib -n "__fish_seen_subcommand_from record$kind" -l keep -d 'Replace no older record'
end
complete -c wenlolib -n "__fish_seen_subcommand_from explain$app" -l option -x -d 'Option word'
for call in preview record
    set -l log "__fish_seen_subcommand_from $call$printer"
    complete -c wenlolib -n $log -l device-id -x -d 'Device identifier'
    complete -c wenlolib -n $log -l sn -x -d 'Serial number'
    complete -c wenlolib -n $log -l romver -x -d 'ROM version'
    complete -c wenlolib -n $log -l new-tag-type -d 'Newer document layout'
end
