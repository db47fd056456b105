#!/bin/bash
# What `grep -F` and `sed` take for the work of search_bench: search.sh FOLDER (with 1.5 GiB free).
set -e
folder=$1
plain='the quick brown fox jumps over the lazy'
hit='the quick brown fox jumps over the hare'
japanese='いろはにほへと ちりぬるを わかよたれそ つねならむ うゐのおくやま兎'
yes "$plain" | head -c 1G >"$folder/log"
yes "$hit" | head -n 1000000 >"$folder/hits"
yes "$japanese" | head -n 1000000 >"$folder/japanese"
yes "$plain" | head -c 100M | tr '\n' ' ' >"$folder/line"
printf hare >>"$folder/line"
sed '0~26s/lazy/hare/' < <(yes "$plain" | head -c 100M) | tr '\n' ' ' >"$folder/linehits"

measure() {
    echo "$*"
    { time -p "$@" >/dev/null || true; } 2>&1 | grep -E 'user|sys' | tr '\n' ' '
    echo
}
measure grep -cF hare "$folder/log"
measure grep -ciF hare "$folder/log"
measure grep -cF hare "$folder/line"
measure grep -cF ezzz "$folder/line"
measure sed 's/hare/tortoise/g' "$folder/hits"
measure sed 's/兎/tortoise/g' "$folder/japanese"
measure sed 's/hare/tortoise/g' "$folder/linehits"
rm "$folder"/{log,hits,japanese,line,linehits}
