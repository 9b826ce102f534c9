# A release changes the version in the project's first line and in the texts below, and the
# application id stands in two files and their names: whoever forgets one of them hears of it here.
set(id com.vendrelis.SealedPackageBuilder)
file(READ ${SOURCE_DIR}/packaging/${id}.desktop desktop)
file(READ ${SOURCE_DIR}/packaging/${id}.metainfo.xml metainfo)

# expect(where text pattern): fails the test by name when `text` doesn't match.
function(expect where text pattern)
    if(NOT text MATCHES "${pattern}")
        message(SEND_ERROR "${where} doesn't hold '${pattern}'")
    endif()
endfunction()

expect("desktop entry" "${desktop}" "\nIcon=${id}\n")
expect("metainfo" "${metainfo}" "<id>${id}</id>")
expect("metainfo" "${metainfo}" "<launchable type=\"desktop-id\">${id}.desktop</launchable>")
expect("newest release in the metainfo" "${metainfo}" "<releases>[ \n]*<release version=\"${VERSION}\"")
file(READ ${SOURCE_DIR}/CHANGELOG.md changes)
string(REGEX MATCH "\n## [0-9][^\n]*" newest "${changes}")
expect("newest release in the change log" "${newest}" "## ${VERSION} ")
file(GLOB manuals ${SOURCE_DIR}/packaging/*.1)
foreach(path ${manuals})
    file(READ ${path} manual)
    expect("${path}" "${manual}" "\"${VERSION}\" \"User Commands\"")
endforeach()
foreach(program ${PROGRAMS})
    execute_process(COMMAND ${program} --version OUTPUT_VARIABLE told)
    expect("${program} --version" "${told}" " ${VERSION}\n$")
endforeach()
