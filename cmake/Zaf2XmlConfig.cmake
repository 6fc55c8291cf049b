# Defines the target Zaf2Xml::appfile: loads, saves and compares application files, and reports
# losses.
include(CMakeFindDependencyMacro)
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})
find_dependency(Nettle)
list(POP_BACK CMAKE_MODULE_PATH)
include(${CMAKE_CURRENT_LIST_DIR}/Zaf2XmlTargets.cmake)
