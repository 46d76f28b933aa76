# One INTERFACE target carries the language level, the warnings and Qt's strictness macros; every
# target of the project links it.
add_library(skylantra_common_cfg INTERFACE)
target_compile_features(skylantra_common_cfg INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)
target_compile_options(skylantra_common_cfg INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Wno-sign-conversion)
target_compile_definitions(skylantra_common_cfg INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_USE_QSTRINGBUILDER
    QT_NO_KEYWORDS
    SKYLANTRA_VERSION="${PROJECT_VERSION}")

if(SKYLANTRA_FUZZ)
    set(_sanitize -fsanitize=fuzzer-no-link,address,undefined,float-cast-overflow,float-divide-by-zero
        -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
    target_compile_options(skylantra_common_cfg INTERFACE ${_sanitize})
    target_link_options(skylantra_common_cfg INTERFACE -fsanitize=address,undefined)
elseif(SKYLANTRA_SANITIZE)
    set(_sanitize -fsanitize=address,undefined,float-cast-overflow,float-divide-by-zero
        -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(skylantra_common_cfg INTERFACE ${_sanitize})
    target_link_options(skylantra_common_cfg INTERFACE ${_sanitize})
endif()
