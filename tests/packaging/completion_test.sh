#!/usr/bin/env bash
# The bash completions of avhost and stbavd, driven as bash drives them: the
# completion function is called with COMP_WORDS/COMP_CWORD and COMPREPLY is
# compared with what must be offered.
#   completion_test.sh SOURCE_DIR AVHOST
set -uo pipefail
SRC=$1
AVHOST=$2
source /usr/share/bash-completion/bash_completion || { echo "bash-completion is not installed"; exit 1; }
source "$SRC/etc/bash-completion/avhost"
source "$SRC/etc/bash-completion/stbavd"
compopt() { :; }  # only valid inside a completion bash runs itself
fails=0

# complete FUNCTION WORD... : COMPREPLY for the last word being completed
complete_words() {
    local fn=$1
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMP_LINE="$*"
    COMP_POINT=${#COMP_LINE}
    COMPREPLY=()
    "$fn"
    printf '%s\n' "${COMPREPLY[@]}" | sort | tr '\n' ' '
}

expect() {  # expect WHAT GOT WANTED
    if [ "$2" != "$3" ]; then
        echo "FAIL $1: got '$2', wanted '$3'"
        fails=$((fails + 1))
    fi
}

expect "avhost commands" "$(complete_words _avhost "$AVHOST" s)" "send session "
expect "avhost newer commands" "$(complete_words _avhost "$AVHOST" d)" "decode dissector "
expect "avhost replay options" "$(complete_words _avhost "$AVHOST" replay x.cap --u)" "--update "
expect "avhost send options" "$(complete_words _avhost "$AVHOST" send --a)" "--apply "
expect "avhost operation names" "$(complete_words _avhost "$AVHOST" send -d /dev/null stbsystemStatusE)" \
    "stbsystemStatusEnable= "
expect "avhost names from the dictionary" \
    "$(complete_words _avhost "$AVHOST" send videooutputManualF | tr ' ' '\n' | grep -c .)" "2"
expect "avhost monitor options" "$(complete_words _avhost "$AVHOST" monitor --pt)" "--pty "
expect "stbavd log levels" "$(complete_words _stbavd stbavd -v '')" "0 1 2 3 4 "
expect "stbavd options" "$(complete_words _stbavd stbavd -)" "-P -R -U -a -c -d -h -r -v "
expect "stbavd real-time priorities" "$(complete_words _stbavd stbavd --realtime '')" "10 50 90 "
expect "stbavd long options" "$(complete_words _stbavd stbavd --up)" "--upload --upload-port= --upload= "

[ "$fails" -eq 0 ] && echo "completions: all cases pass"
exit "$fails"
