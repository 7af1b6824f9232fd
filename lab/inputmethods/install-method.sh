#!/bin/sh
# Puts a voice input method in place for this user: its program, the files that tell where it is, and settings
# where there are none. Nothing is changed unless everything could be written.
set -eu
umask 022
name=@NAME@ version=@VERSION@ title='@TITLE@' folder='@FOLDER@' sha256=@SHA256@

data=${XDG_DATA_HOME:-$HOME/.local/share}
settings=$(dirname "$data")/localLow
target=$HOME/.local/opt$folder
program=$target/$name
entry=$data/applications/$name.desktop
config= defaults=
case $name in
    iFlyVoice)
        config="$settings/iFly Info Tek/iFlyIME/iflyImeCfg.xml"
        defaults="$settings/iFly Info Tek/iFlyIME/config.xml" ;;
    SpeechInput) defaults=$settings/Baidu/BaiduPinyin/SpeechInput.ini ;;
esac

finish() {
    status=$?
    trap - EXIT
    for file in "$program" "$entry" "$config" "$defaults"; do
        [ -z "$file" ] || rm -f "$file.part"
    done
    [ $status -eq 0 ] || echo "$title: not installed" >&2
    exit $status
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

put() { # put FILE MODE: what is read, beside the file and on the disk
    mkdir -p "$(dirname "$1")"
    cat >"$1.part"
    chmod "$2" "$1.part"
    sync "$1.part"
}
for_xml() {
    printf '%s' "$1" | sed 's/&/\&amp;/g; s/</\&lt;/g; s/>/\&gt;/g'
}
for_exec() { # quoted as a desktop entry wants it: for its command line, and once more as a text of the file
    printf '"%s"' "$(printf '%s' "$1" | sed 's/[\\"$`]/\\&/g; s/\\/\\\\/g; s/%/%%/g')"
}

sed '1,/^#PROGRAM$/d' "$0" | base64 -d | put "$program" 755
[ "$(sha256sum <"$program.part" | cut -d' ' -f1)" = "$sha256" ] || {
    echo "$0: damaged" >&2
    exit 1
}
put "$entry" 644 <<EOF
[Desktop Entry]
Type=Application
Name=$title
Exec=$(for_exec "$program")
Terminal=false
Categories=Utility;
EOF
[ -z "$config" ] || put "$config" 644 <<EOF
<?xml version="1.0" encoding="UTF-8"?>
<config>
    <installPath_ver2>$(for_xml "$target")</installPath_ver2>
    <ver>$version</ver>
</config>
EOF
# The user's own settings stay. What the methods come with is no key that the receiver types.
if [ -n "$defaults" ] && [ ! -e "$defaults" ]; then
    case $name in
        iFlyVoice) printf '%s\n' '<?xml version="1.0" encoding="UTF-8"?>' '<config>' \
            '    <offline_recognizer_mode>0</offline_recognizer_mode>' \
            '    <start_end>enable=0;keyStr=</start_end>' '</config>' | put "$defaults" 644 ;;
        SpeechInput) printf '%s\n' '[Setting]' 'HotKey=120' | put "$defaults" 644 ;;
    esac
fi
for file in "$program" "$entry" "$config" "$defaults"; do
    if [ -n "$file" ] && [ -e "$file.part" ]; then
        mv -f "$file.part" "$file"
        sync "$(dirname "$file")"
    fi
done
echo "$title: installed in $target"
exit 0
#PROGRAM
