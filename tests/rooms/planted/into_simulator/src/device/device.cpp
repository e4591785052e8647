#include <brenvozulta_simulator/control.h>
