# fish completion for pelmora

set -l commands window render settings idle defaults check match sources register unregister

complete -c pelmora -f

set -l first "not __fish_seen_subcommand_from $commands"
complete -c pelmora -n $first -a window -d 'Run the saver in a window'
complete -c pelmora -n $first -a render -d 'Render the saver to picture files'
complete -c pelmora -n $first -a settings -d 'Open the settings'
complete -c pelmora -n $first -a idle -d 'Start the saver when the user is idle'
complete -c pelmora -n $first -a register -d "Add the saver to XScreenSaver's list"
complete -c pelmora -n $first -a unregister -d "Take the saver from XScreenSaver's list"
complete -c pelmora -n $first -a defaults -d 'Read and write the preferences'
complete -c pelmora -n $first -a check -d 'Tell why a picture is shown or not'
complete -c pelmora -n $first -a match -d 'List the files that a filter admits'
complete -c pelmora -n $first -a sources -d 'List, add and remove picture folders'
complete -c pelmora -n $first -l version -d 'Show the version'
complete -c pelmora -n $first -l root -d 'Draw for a saver host'
complete -c pelmora -n $first -l no-layers -d 'On Wayland, use ordinary full-screen windows'
complete -c pelmora -n $first -l window-id -x -d 'Draw in this window of the X server'

complete -c pelmora -l help -d 'Show the options'
complete -c pelmora -n "$first; or __fish_seen_subcommand_from window" -l renderer -x \
    -a 'auto gpu software' -d 'What draws'
complete -c pelmora -n "$first; or __fish_seen_subcommand_from window render settings idle" -l verbose \
    -d 'Write the log to standard error too'

set -l window '__fish_seen_subcommand_from window'
complete -c pelmora -n $window -l size -x -d 'The size in points, WxH'
complete -c pelmora -n $window -l preview -d 'Run as the small preview'

set -l render '__fish_seen_subcommand_from render'
complete -c pelmora -n $render -l out -r -F -d 'Write the picture there'
complete -c pelmora -n $render -l layers -r -F -d 'Write what every view shows there'
complete -c pelmora -n $render -l frames -x -a '(__fish_complete_directories)' \
    -d 'Write the frames of a film there'
complete -c pelmora -n $render -l size -x -d 'The size in points, WxH'
complete -c pelmora -n $render -l scale -x -d 'Device pixels in a point'
complete -c pelmora -n $render -l displays -x -d 'Several displays'
complete -c pelmora -n $render -l screen -x -d 'Which view is written'
complete -c pelmora -n $render -l preview -d 'Write the small preview instead'
complete -c pelmora -n $render -l start -x -d 'Local time at the start'
complete -c pelmora -n $render -l at -x -d 'The moment to show, in seconds'
complete -c pelmora -n $render -l fps -x -d 'Frames of a film in a second'
complete -c pelmora -n $render -l from -x -d 'Where a film begins, in seconds'
complete -c pelmora -n $render -l to -x -d 'Where a film ends, in seconds'
complete -c pelmora -n $render -l no-settle -d 'Do not wait for the folders to be walked'
complete -c pelmora -n $render -l samples -d 'Show sample pictures to a user who has none'
complete -c pelmora -n $render -l track -x -d 'What seems to play'
complete -c pelmora -n $render -l artist -x -d 'Who plays it'
complete -c pelmora -n $render -l album -x -d 'Where it is from'

set -l idle '__fish_seen_subcommand_from idle'
complete -c pelmora -n $idle -l delay -x -d 'How long there is no input, in seconds'
complete -c pelmora -n $idle -l not-on-battery -d 'Do not start it on battery'

complete -c pelmora -n '__fish_seen_subcommand_from register' -l select \
    -d 'Make it the saver that is shown'
complete -c pelmora -n '__fish_seen_subcommand_from register unregister' -l file -r -F \
    -d 'The settings'

set -l defaults '__fish_seen_subcommand_from defaults'
set -l keys Delay FilterPredicate NumImages ShowiTunesTrack Sources UsePolaroid iTunesTrackType
set -l verbs read write delete
complete -c pelmora -n "$defaults; and not __fish_seen_subcommand_from $verbs" -a "$verbs"
complete -c pelmora -n "$defaults; and __fish_seen_subcommand_from $verbs;
    and not __fish_seen_subcommand_from $keys" -a "$keys"

set -l check '__fish_seen_subcommand_from check'
complete -c pelmora -n $check -F
complete -c pelmora -n $check -l size -x -d 'The longest side in pixels'
complete -c pelmora -n $check -l out -x -a '(__fish_complete_directories)' \
    -d 'Write what would be shown there'

set -l match '__fish_seen_subcommand_from match'
complete -c pelmora -n $match -a '(__fish_complete_directories)'
complete -c pelmora -n $match -s 0 -d 'End each path with a NUL byte'

set -l sources '__fish_seen_subcommand_from sources'
set -l verbs list add remove
complete -c pelmora -n "$sources; and not __fish_seen_subcommand_from $verbs" -a "$verbs"
complete -c pelmora -n "$sources; and __fish_seen_subcommand_from add remove" \
    -a '(__fish_complete_directories)'
complete -c pelmora -n $sources -l chance -x -d 'Its relative weight'
complete -c pelmora -n $sources -l days -x -a 'all none sun mon tue wed thu fri sat' \
    -d 'On which days it is used'
complete -c pelmora -n $sources -l screens -x -a all -d 'On which displays it is used'
complete -c pelmora -n $sources -l disabled -d 'Leave it switched off'
