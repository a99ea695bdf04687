#!/bin/bash
# Authenticode signatures, where there is a key. To be sourced after common.sh.
#   NMFV_SIGN_CERT, NMFV_SIGN_KEY   certificate and its chain, and the key, in PEM files; without them nothing is signed
#   NMFV_SIGN_PASSWORD_FILE         what opens the key, if it is closed
#   NMFV_SIGN_TIMESTAMP             address of a time-stamp server; what it answers is never the same twice

signing_text() {
    if [[ -n ${NMFV_SIGN_CERT:-} && -n ${NMFV_SIGN_KEY:-} ]]; then
        echo "signing with $NMFV_SIGN_CERT"
    else
        echo "unsigned: NMFV_SIGN_CERT and NMFV_SIGN_KEY name no certificate and key"
    fi
}

# The time in the signature is the package's, so that the same key gives the same bytes.
sign_files() {
    [[ -n ${NMFV_SIGN_CERT:-} && -n ${NMFV_SIGN_KEY:-} ]] || return 0
    local file
    for file in "$@"; do
        osslsigncode sign -certs "$NMFV_SIGN_CERT" -key "$NMFV_SIGN_KEY" -h sha256 -n "$package_title" \
            ${NMFV_SIGN_PASSWORD_FILE:+-readpass "$NMFV_SIGN_PASSWORD_FILE"} \
            ${NMFV_SIGN_TIMESTAMP:+-ts "$NMFV_SIGN_TIMESTAMP"} \
            -time "$SOURCE_DATE_EPOCH" -in "$file" -out "$file.signed" && mv "$file.signed" "$file" || return
    done
}
