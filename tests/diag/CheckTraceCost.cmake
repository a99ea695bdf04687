# With tracing off a trace call is a bit test and a branch that isn't taken, nothing else. Fails when TracingCaller in
# OBJECT does more on that way.
execute_process(COMMAND ${OBJDUMP} -d --no-show-raw-insn ${OBJECT} OUTPUT_VARIABLE code RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "${OBJDUMP} could not read ${OBJECT}")
endif()
string(REGEX MATCH "<TracingCaller>:\n([^\n]*:\t[^\n]*\n)+" code "${code}")
string(REGEX MATCHALL ":\t[a-z]+" instructions "${code}")
list(TRANSFORM instructions REPLACE ":\t" "")
string(REPLACE ";" " " instructions "${instructions}")
# The compiler may load the address of the flags first, and clang makes the caller's frame before everything. What traces
# comes behind the return.
if(NOT instructions MATCHES "^(sub )?(mov )?testb? jne (nop )?(add )?ret .*(call|jmp)" OR NOT code MATCHES "test[bl]? +\\$0x8,")
  message(FATAL_ERROR "not one bit test and a return:\n${code}")
endif()
