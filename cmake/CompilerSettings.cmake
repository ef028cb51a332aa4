# The compiler settings of every target of this project.
add_library(krosac_settings INTERFACE)
target_compile_features(krosac_settings INTERFACE cxx_std_20 c_std_11)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# Results must have the same bits on every optimisation level and machine: no fused multiply-add, no fast-math.
target_compile_options(krosac_settings INTERFACE -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow)
target_compile_definitions(krosac_settings INTERFACE _FILE_OFFSET_BITS=64)

if(KROSAC_SANITIZE)
  set(sanitizer_flags -fsanitize=${KROSAC_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(krosac_settings INTERFACE ${sanitizer_flags})
  target_link_options(krosac_settings INTERFACE ${sanitizer_flags})
endif()
