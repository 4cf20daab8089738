# Qt's headers take half of the time that a test's source does, or more. Only where the same sources are
# also built without: a forgotten #include is not noticed here.

# tarvio_precompile_headers(TARGET HEADER...): for this one, and for those that reuse them.
function(tarvio_precompile_headers target)
  if(TARVIO_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# tarvio_reuse_precompiled_headers(TARGET OWNER): what is precompiled for OWNER serves this one, too.
# QtTest's headers are not among it: with Qt 6 they differ from folder to folder.
function(tarvio_reuse_precompiled_headers target owner)
  if(TARVIO_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} REUSE_FROM ${owner})
  endif()
endfunction()
