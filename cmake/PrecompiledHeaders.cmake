# Qt's headers take three of the five seconds that a source of a window's test does. Only where the
# same sources are also built without: a forgotten #include is not noticed here.

# tarvio_precompile(TARGET HEADER...): they are read once for all sources of the target.
function(tarvio_precompile target)
  if(TARVIO_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# tarvio_reuse_precompiled(TARGET OTHER): those of the other target serve this one, too.
function(tarvio_reuse_precompiled target other)
  if(TARVIO_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} REUSE_FROM ${other})
  endif()
endfunction()
