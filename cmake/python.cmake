# The interpreter that the Python module is built for: the distribution's, whose packages bring NumPy and pybind11.
find_program(ORVMESH_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)
set(Python_EXECUTABLE ${ORVMESH_PYTHON})
find_package(Python COMPONENTS Interpreter Development.Module REQUIRED)
find_package(pybind11 2.10 CONFIG REQUIRED)
