# Qt's headers take three of the five seconds that a source of a window's test does. Only where the
# same sources are also built without: a forgotten #include is not noticed here.

# tarvio_reuse_precompiled_headers(TARGET): what is precompiled for the views serves this one, too.
# QtTest's headers are not among it: with Qt 6 they differ from folder to folder.
function(tarvio_reuse_precompiled_headers target)
  if(TARVIO_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} REUSE_FROM tarvio_views)
  endif()
endfunction()
