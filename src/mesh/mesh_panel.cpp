#include "mesh/mesh_panel.h"

#include <algorithm>
#include <cmath>

#include "mesh/initial_mesh.h"
#include "mesh/pipe_holes.h"
#include "mesh/split_history.h"

namespace pvx {

bool Same_Mesh(const Project& a, const Project& b) {
  if (a.Mesh_Node.count() != b.Mesh_Node.count() || a.Mesh_Element.count() != b.Mesh_Element.count())
    return false;
  for (int n = 1; n <= a.Mesh_Node.count(); ++n) {
    if (!(std::fabs(a.Mesh_Node[n].X - b.Mesh_Node[n].X) < Ring_Closure_Tolerance) ||
        !(std::fabs(a.Mesh_Node[n].Y - b.Mesh_Node[n].Y) < Ring_Closure_Tolerance))
      return false;
  }
  for (int e = 1; e <= a.Mesh_Element.count(); ++e)
    if (a.Mesh_Element[e].Corner != b.Mesh_Element[e].Corner) return false;
  return true;
}

bool Mesh_Is_Integrated(const Project& p) {
  if (p.Circuit.count() == 0 || p.Mesh_Element.count() == 0) return false;
  // Rebuild what the history gives and compare: integration adds twenty elements per section, so
  // a mesh equal to the plain replay is not integrated, and one equal to the replay with its holes
  // is.
  Project replay = p;
  Mesh_Session session;
  std::string message;
  int applied = 0;
  if (!Repeat_Splitting(replay, session, p.Split_Position, applied, message)) return false;
  if (Same_Mesh(replay, p)) return false;
  if (!Integrate_Circuits(replay, session, message)) return false;
  return Same_Mesh(replay, p);
}

bool Open_Mesh_Session(Project& p, Mesh_Session& session, std::string& message) {
  message.clear();
  Fit_Ratio_Tables(session.Parameters);
  session.Parameters.PickedElement = 0;
  session.Parameters.PickedSide = 0;
  bool ok = true;
  if (p.Mesh_Element.count() == 0) {
    ok = Make_Initial_Mesh(p, session, message);
    if (ok) p.Split_Position = 0;
  } else {
    p.Split_Position = static_cast<std::int16_t>(std::clamp<int>(p.Split_Position, 0, p.Split.count()));
    Rebuild_Mesh_Index(p, session.Index);
    session.Circuits_Integrated = Mesh_Is_Integrated(p);
  }
  p.Mesh_Valid = As_Flag(p.Mesh_Element.count() > 0);
  return ok;
}

}  // namespace pvx
