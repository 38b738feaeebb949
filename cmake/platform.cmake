# The name by which folders and targets call the system that is built for.
if(WIN32)
  set(VELMORA_SYSTEM windows)
else()
  set(VELMORA_SYSTEM linux)
endif()
