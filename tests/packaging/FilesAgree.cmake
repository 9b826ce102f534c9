# A release changes the version in three places, and the application id stands in two files and
# their names: whoever forgets one of them hears of it here.
set(id com.vendrelis.SealedPackageBuilder)
file(READ ${SOURCE_DIR}/packaging/${id}.desktop desktop)
file(READ ${SOURCE_DIR}/packaging/${id}.metainfo.xml metainfo)
file(READ ${SOURCE_DIR}/packaging/sealed-package-builder.1 manual)

# expect(where text pattern): fails the test by name when `text` doesn't match.
function(expect where text pattern)
    if(NOT text MATCHES "${pattern}")
        message(SEND_ERROR "${where} doesn't hold '${pattern}'")
    endif()
endfunction()

expect("desktop entry" "${desktop}" "\nIcon=${id}\n")
expect("metainfo" "${metainfo}" "<id>${id}</id>")
expect("metainfo" "${metainfo}" "<launchable type=\"desktop-id\">${id}.desktop</launchable>")
expect("metainfo" "${metainfo}" "<release version=\"${VERSION}\"")
expect("manual page" "${manual}" "\"${VERSION}\" \"User Commands\"")
