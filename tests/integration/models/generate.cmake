# cmake -DFILE=... -DFOLDER=... -P generate.cmake: what the configuration does with a file of model names.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/../../../cmake/model_names.cmake)
velmora_generate_model_names("${FILE}" "${FOLDER}")
