if(ORVANE_SANITIZE)
    add_compile_options(-fsanitize=${ORVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ORVANE_SANITIZE})
endif()
if(ORVANE_BUILD_FUZZERS)
    # The library under test reports its coverage too.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
