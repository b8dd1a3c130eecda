# cmake -DFROM=file -DTO=file.gz -P GzipFile.cmake
# gzip -9n: the same bytes on every build (no name, no time stamp), as
# Debian wants of manual pages and changelogs.
execute_process(COMMAND gzip -9nc "${FROM}" OUTPUT_FILE "${TO}" RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "gzip ${FROM} failed")
endif()
