# SPDX-License-Identifier: Apache-2.0
# Draws the times of bench/growth.sh. Called by scripts/bench.sh with the variables data and picture.
listings = 5
set terminal svg size 1120, 520 font "sans-serif,13" background "white"
set output picture
set logscale xy
set format x "%.0f"
set format y "%.0f"
set xlabel "objects"
set xrange [400:70000]
set yrange [1:1000000]
set grid linecolor "#dddddd"
set key top left reverse Left
stats data using 1 nooutput
set multiplot layout 1, 2
set title "Listings"
set ylabel "processor time, milliseconds"
plot for [block = 0:listings - 1] data index block using 1:2 with linespoints linewidth 1.5 \
  pointtype (block + 4) linetype (block + 1) title columnheader(1)
set title "Bulk commands"
unset ylabel
set key top right
plot for [block = listings:STATS_blocks - 1] data index block using 1:2 with linespoints linewidth 1.5 \
  pointtype ((block - listings) % 10 + 4) linetype (block - listings + 1) title columnheader(1)
