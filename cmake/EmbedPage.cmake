# Writes the source that holds the report's page: cmake -DOUT=FILE -DSTYLE=FILE -DBODY=FILE "-DSCRIPT=FILE;..." -P this.

function(constant name)
  set(text "const std::string_view ${name} = ")
  foreach(file IN LISTS ARGN)
    file(READ "${file}" content)
    string(APPEND text "R\"page(${content})page\"\n    ")
  endforeach()
  string(STRIP "${text}" text)
  set(source "${source}\n${text};\n" PARENT_SCOPE)
endfunction()

set(source "#include \"refhost/report/Page.h\"\n\nnamespace refhost {\n")
constant(kPageStyle ${STYLE})
constant(kPageBody ${BODY})
constant(kPageScript ${SCRIPT})
file(WRITE "${OUT}" "${source}\n}  // namespace refhost\n")
