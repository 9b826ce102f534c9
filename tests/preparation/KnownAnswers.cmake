# The committed answers are what the second implementation computes today.
execute_process(COMMAND ${PYTHON} ${FOLDER}/known_answers.py
    WORKING_DIRECTORY ${FOLDER} OUTPUT_VARIABLE computed RESULT_VARIABLE result)
file(READ ${FOLDER}/KnownAnswers.h committed)
if(NOT result EQUAL 0 OR NOT computed STREQUAL committed)
    message(FATAL_ERROR "KnownAnswers.h isn't what known_answers.py prints")
endif()
