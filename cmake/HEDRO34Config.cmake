include(CMakeFindDependencyMacro)
find_dependency(EXPAT)
find_dependency(nlohmann_json)
include(${CMAKE_CURRENT_LIST_DIR}/HEDRO34Targets.cmake)
