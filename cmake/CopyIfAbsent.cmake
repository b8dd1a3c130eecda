# cmake -DFROM=file -DTO=file -P CopyIfAbsent.cmake
# Copies FROM to TO only when TO does not exist: the user's settings stay.
if(NOT EXISTS "${TO}")
  file(COPY_FILE "${FROM}" "${TO}")
endif()
