# Run by cpack on what is about to be packed: makes of each component what Debian expects of a package.
set(packages library libqelfmt1 dev libqelfmt-dev tools qelfmt)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC) # of SOURCE_DATE_EPOCH when that is set
while(packages)
    list(POP_FRONT packages component package)
    set(root "${CPACK_TEMPORARY_DIRECTORY}/${component}/usr")
    set(doc "${root}/share/doc/${package}")
    configure_file("${CMAKE_CURRENT_LIST_DIR}/copyright" "${doc}/copyright" COPYONLY)
    file(WRITE "${doc}/changelog" "qelfmt (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n"
         "  * See CHANGELOG.md of the sources.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")

    # The dynamic linker knows these folders.
    file(GLOB programs "${root}/lib/*.so.*" "${root}/bin/*")
    foreach(program IN LISTS programs)
        if(NOT IS_SYMLINK "${program}")
            file(RPATH_REMOVE FILE "${program}")
        endif()
    endforeach()

    file(GLOB pages "${root}/share/man/*/*" "${doc}/changelog")
    foreach(page IN LISTS pages)
        execute_process(COMMAND gzip -9nf "${page}" COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
endwhile()
