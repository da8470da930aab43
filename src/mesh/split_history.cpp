#include "mesh/split_history.h"

#include <algorithm>
#include <utility>

#include "mesh/initial_mesh.h"
#include "mesh/splitting.h"

namespace pvx {

bool Split_Execution(Project& p, Mesh_Session& session, std::string& message) {
  message.clear();
  if (session.Circuits_Integrated) {
    message = Circuits_Integrated_Message;
    return false;
  }
  Splitting_Parameters& s = session.Parameters;
  Set_Ratios(p, s);
  const int position = std::max(0, std::min<int>(p.Split_Position, p.Split.count()));
  if (position >= Max_I16_Reference) {
    message = "The splitting history cannot hold more than 32767 cuts; the cut is not carried out.";
    return false;
  }
  Table<double> fractions = s.Ratios;
  fractions.resize(s.Division);
  if (!Splitting(p, session, s.PickedElement, s.PickedSide, fractions, message)) return false;
  p.Split.resize(position);
  Split_Record record;
  record.Element = static_cast<std::int16_t>(s.PickedElement);
  record.Side = static_cast<std::int16_t>(s.PickedSide);
  record.Fractions = std::move(fractions);
  p.Split.add(std::move(record));
  p.Split_Position = static_cast<std::int16_t>(p.Split.count());
  return true;
}

bool Repeat_Splitting(Project& p, Mesh_Session& session, int count, int& applied, std::string& message) {
  applied = 0;
  message.clear();
  if (!Make_Initial_Mesh(p, session, message)) return false;
  count = std::max(0, std::min(count, p.Split.count()));
  for (int i = 1; i <= count; ++i) {
    const Split_Record& op = p.Split[i];
    session.Parameters.PickedElement = op.Element;
    session.Parameters.PickedSide = op.Side;
    session.Parameters.Division = op.Fractions.count();
    session.Parameters.Ratios = op.Fractions;
    std::string reason;
    if (!Splitting(p, session, op.Element, op.Side, op.Fractions, reason)) {
      message = "Cut " + std::to_string(i) + " of the splitting history cannot be carried out: " + reason;
      return false;
    }
    applied = i;
  }
  return true;
}

namespace {

bool Replay_To(Project& p, Mesh_Session& session, int position, std::string& message) {
  int applied = 0;
  const bool ok = Repeat_Splitting(p, session, position, applied, message);
  p.Split_Position = static_cast<std::int16_t>(applied);
  return ok;
}

}  // namespace

bool History_Backward(Project& p, Mesh_Session& session, std::string& message) {
  message.clear();
  // From an integrated mesh at the start of the history the step back is to the plain mesh.
  if (p.Split_Position <= 0) return session.Circuits_Integrated ? Replay_To(p, session, 0, message) : true;
  return Replay_To(p, session, p.Split_Position - 1, message);
}

bool History_Forward(Project& p, Mesh_Session& session, std::string& message) {
  message.clear();
  if (p.Split_Position >= p.Split.count()) return true;
  return Replay_To(p, session, p.Split_Position + 1, message);
}

bool History_All(Project& p, Mesh_Session& session, std::string& message) {
  return Replay_To(p, session, p.Split.count(), message);
}

bool History_Reset(Project& p, Mesh_Session& session, std::string& message) {
  return Replay_To(p, session, 0, message);
}

bool History_Clean(Project& p, Mesh_Session& session, std::string& message) {
  if (!Make_Initial_Mesh(p, session, message)) return false;
  p.Split.clear();
  p.Split_Position = 0;
  return true;
}

Toolbar_State Set_Toolbar(const Project& p, const Mesh_Session& session) {
  Toolbar_State t;
  t.Backward = p.Split_Position > 0 || session.Circuits_Integrated;
  t.Forward = p.Split_Position < p.Split.count();
  t.Reset = p.Split.count() > 0;
  t.Integrate_Visible = p.Circuit.count() > 0 && !session.Circuits_Integrated;
  return t;
}

}  // namespace pvx
