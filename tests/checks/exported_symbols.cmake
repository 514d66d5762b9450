cmake_minimum_required(VERSION 3.25)

# Compares what a shared library exports with a checked-in list of demangled names.
# Run as: cmake -DNM=nm -DLIBRARY=lib.so -DEXPECTED=list.txt -DACTUAL=out.txt -P exported_symbols.cmake
#     or: cmake -DOBJDUMP=objdump -DDEMANGLER=c++filt -DLIBRARY=library.dll -D... -P exported_symbols.cmake
# After a wanted change of the interface, copy ACTUAL of the first form over EXPECTED and review the difference.
#
# One list serves both: a DLL lacks nothing of it but the names of types, which are no part of its export table.
file(STRINGS "${EXPECTED}" expected)
set(symbols "")
if(OBJDUMP)
  execute_process(COMMAND "${OBJDUMP}" --private-headers "${LIBRARY}" OUTPUT_VARIABLE output
    COMMAND_ERROR_IS_FATAL ANY)
  # The rows of the table of names; the name is what stands last in a row.
  string(REGEX REPLACE "^.*\n\\[Ordinal/Name Pointer\\] Table[^\n]*" "" output "${output}")
  string(REGEX MATCHALL "\n\t\\[ *[0-9]+\\][^\n]+" rows "${output}")
  list(TRANSFORM rows REPLACE ".* " "")
  list(JOIN rows "\n" mangled)
  file(WRITE "${ACTUAL}.mangled" "${mangled}\n")
  execute_process(COMMAND "${DEMANGLER}" INPUT_FILE "${ACTUAL}.mangled" OUTPUT_VARIABLE output
    COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "\n$" "" output "${output}")
  string(REPLACE "\n" ";" symbols "${output}")
  list(FILTER expected EXCLUDE REGEX "^typeinfo name for ")
else()
  execute_process(COMMAND "${NM}" --dynamic --defined-only --demangle "${LIBRARY}"
    OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE ";" "," output "${output}")
  string(REGEX REPLACE "\n$" "" output "${output}")
  string(REPLACE "\n" ";" lines "${output}")
  foreach(line IN LISTS lines)
    # Address, one letter of kind, name. Weak symbols of the standard library's templates are no interface.
    if(line MATCHES "^[0-9a-f]+ ([A-Za-z]) (.*)$")
      set(kind "${CMAKE_MATCH_1}")
      set(name "${CMAKE_MATCH_2}")
      if(kind MATCHES "[TDRBVW]" AND NOT (kind STREQUAL "W" AND name MATCHES "std::|__gnu_cxx::"))
        list(APPEND symbols "${name}")
      elseif(NOT kind MATCHES "[VWu]")
        list(APPEND symbols "${kind} ${name}")
      endif()
    endif()
  endforeach()
endif()

list(SORT symbols)
list(REMOVE_DUPLICATES symbols)
list(JOIN symbols "\n" text)
file(WRITE "${ACTUAL}" "${text}\n")
if(NOT expected STREQUAL symbols)
  set(added ${symbols})
  list(REMOVE_ITEM added ${expected})
  set(missing ${expected})
  list(REMOVE_ITEM missing ${symbols})
  list(JOIN added "\n  + " added)
  list(JOIN missing "\n  - " missing)
  message(FATAL_ERROR "The exported symbols differ from the list.\n  + ${added}\n  - ${missing}")
endif()
