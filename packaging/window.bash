# What ./run and the check of an installed root share: they work the window on a virtual display from
# outside.

# The id of the window once it is on the screen, or nothing where none comes within a minute.
id_of_window() {
    timeout 60 xdotool search --sync --onlyvisible --name '^Tarvio$' | head -n 1 || true
}

# turn_capture_on ID: ECU > Capture, by keyboard.
turn_capture_on() {
    xdotool windowfocus --sync "$1"
    sleep 1
    xdotool key alt+c
    sleep 0.5
    xdotool key c
}

# echo_pixels PICTURE: yellow is the colour of an echo and of nothing else in the window.
echo_pixels() {
    convert "$1" -fill black +opaque 'rgb(255,255,0)' -fill white -opaque 'rgb(255,255,0)' \
        -format '%[fx:round(mean*w*h)]' info:
}
