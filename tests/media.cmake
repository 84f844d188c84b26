# Test media is made by the ffmpeg command at build time: `name` in `folder`
# from the ffmpeg arguments that follow, added to the list named `list`.
# The tests and the benchmarks both make theirs this way.
find_program(TAVORA_FFMPEG ffmpeg REQUIRED)
function(tavora_make_media list folder name)
    add_custom_command(OUTPUT ${folder}/${name}
        COMMAND ${TAVORA_FFMPEG} -nostdin -hide_banner -loglevel error -y ${ARGN} ${folder}/${name}
        VERBATIM)
    set(${list} ${${list}} ${folder}/${name} PARENT_SCOPE)
endfunction()
