#!/bin/bash
# What `grep -F` and `sed` take for the work of search_bench: search.sh FOLDER (with 1.2 GiB free).
set -e
folder=$1
plain='the quick brown fox jumps over the lazy'
hit='the quick brown fox jumps over the hare'
yes "$plain" | head -c 1G >"$folder/log"
yes "$hit" | head -n 1000000 >"$folder/hits"
time -p grep -cF hare "$folder/log" || true
time -p grep -ciF hare "$folder/log" || true
time -p sed 's/hare/tortoise/g' "$folder/hits" >/dev/null
rm "$folder/log" "$folder/hits"
