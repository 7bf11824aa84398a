#compdef zelvra-cli
# Completion of zelvra-cli for zsh; install it in a folder of $fpath as "_zelvra-cli".

_arguments -C \
    '--help[show a summary with examples]' \
    '--version[show the version]' \
    '1:command:((probe\:"print what a movie is, as JSON" frame\:"save the frame that is on screen at a time" export\:"write a movie with its highlights" clips\:"write each marked clip as a movie of its own" annotations\:"print what the application keeps of a movie"))' \
    '*::rest:->rest'

[[ $state == rest ]] || return
case $words[1] in
probe | annotations) _arguments '1:movie:_files' ;;
frame)
    _arguments '1:movie:_files' '--at[the time]:time:' '--output[the PNG picture to write]:picture:_files'
    ;;
export)
    _arguments '1:movie:_files' \
        '--output[the movie to write]:movie:_files' \
        '--from[start here]:time:' \
        '--to[end here]:time:' \
        '--no-audio[leave the sound out]' \
        '*--highlight[add a highlight]:at=T,...:' \
        '--annotations[highlights, range and sound from a JSON file]:file:_files -g "*.json"' \
        '--quiet[no progress]'
    ;;
clips)
    _arguments '1:movie:_files' \
        '--annotations[the clips, from a JSON file]:file:_files -g "*.json"' \
        '--mode[where they go]:mode:(sameAsSource subfolder custom)' \
        '--folder[the folder of mode custom]:folder:_files -/' \
        '--subfolder[the name for mode subfolder]:name:' \
        '--quiet[no progress]'
    ;;
esac
