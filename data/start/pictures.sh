#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# The pictures of the start page: every example in its ISO view, hidden lines, cut to its model.
# Usage: data/start/pictures.sh PROGRAM (kalvane of a build); needs ImageMagick.
set -eu
program=$(realpath "$1")
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for model in ../examples/*.tek; do
    name=$(basename "$model" .tek)
    {
        echo "answer no"
        echo "file $(realpath "$model")"
        echo 'menu "File/Open..."'
        echo "press main oneview"
        echo 'menu "view/Nodes"'
        echo 'menu "view/Constrains"'
        echo 'menu "view/Loads/Off"'
        echo 'menu "view/Hidden Line"'
        echo 'menu "Settings/Global Axis"'
        echo 'menu "Settings/Scrollbars"'
        echo "press main viewtool(1)"
        echo "press main viewtool(1)"
        echo "picture 1 $work/$name.png"
    } > "$work/$name.kds"
    KALVANE_HOME="$work/home" QT_QPA_PLATFORM=offscreen "$program" --script "$work/$name.kds"
    convert "$work/$name.png" -trim +repage -morphology Erode Square:1 -resize 208x132 -background white -gravity center \
        -extent 224x148 -colors 64 "$name.png"
done
