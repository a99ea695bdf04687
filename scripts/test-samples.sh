#!/bin/bash
# The samples, against the unpacked SDK. To be sourced by verb-test-package.sh, whose variables it uses.

# With nothing of this project but what the SDK holds.
build_samples() {
    cmake -G Ninja -S "$sdk/share/NMFVDeitrx/samples" -B "$test/samples" -D CMAKE_SYSTEM_NAME=Windows \
        -D CMAKE_CXX_COMPILER=x86_64-w64-mingw32-g++-posix -D CMAKE_BUILD_TYPE=Release \
        -D CMAKE_CXX_FLAGS="-Wall -Wextra -Werror" -D CMAKE_PREFIX_PATH="$sdk" &&
        cmake --build "$test/samples"
}

# prints FILE COMMAND...: the command succeeds, and its output, kept in FILE, is what stands on standard input.
prints() {
    local file=$test/$1
    shift
    cat >"$file.expected"
    "$@" >"$file" </dev/null || return
    tr -d '\r' <"$file" | diff "$file.expected" -
}

# Ten grey frames in a file that the platform opens without decoders.
make_clip() {
    wine reg.exe add 'HKCU\Software\Wine\MediaFoundation' /v DisableGstByteStreamHandler /t REG_DWORD /d 1 /f &&
        head -c $((64 * 48 * 2 * 10)) /dev/zero | tr '\0' '\200' >"$test/clip.yuy2" &&
        wine "$sdk/bin/nmfvdeint.exe" "$test/clip.yuy2" "$test/clip.avi" --raw 64x48:yuy2@25
}

# Its desktop was begun without a display; the next program begins another.
end_server() { wine --server -k -w || true; }

run_samples() {
    make_clip && cd "$test/samples" &&
        prints stream wine stream.exe "$(windows_path "$sdk/bin/NMFVDeitrx.dll")" <<'END' &&
frame at 0 ms: combs of 140, then of 0
frame at 40 ms: combs of 140, then of 0
frame at 80 ms: combs of 140, then of 0
frame at 120 ms: combs of 140, then of 0
END
        prints controls wine controls.exe <<'END' &&
set by the interface, read from the store: columns 16 to 320
set in the store, read by the interface: merge off, sensitivity 0.50
a sensitivity of 9: 0x80070057
END
        prints session wine session.exe "$(windows_path "$test/clip.avi")" <<<"10 frames" &&
        end_server && NMFV_DISPLAY=1 prints sheet wine sheet.exe 2 <<'END'
3 pages shown
deinterlacing on, automatic on
END
}
