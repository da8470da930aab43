#include "mesh/initial_mesh.h"

#include <utility>

namespace pvx {

namespace {

// The mesh node at a design node's position, or the design node's own number when no mesh node
// lies there (so that a border off the mesh keeps what it had).
template <class Number>
Number Mesh_Node_Of(const Project& p, const Mesh_Index& index, Number design_node) {
  if (!p.Node_X.valid(design_node)) return design_node;
  const int n = Find_Node(p, index, p.Node_X[design_node], p.Node_Y[design_node]);
  return n != 0 ? static_cast<Number>(n) : design_node;
}

bool Build(Project& p, Mesh_Index& index, std::string& message) {
  for (int i = 1; i <= p.Macro.count(); ++i) {
    const Macro& macro = p.Macro[i];
    Mesh_Element e;
    static_cast<Macro_Values&>(e) = macro;
    e.Material = macro.Material;
    e.Macro_Number = static_cast<std::int16_t>(i);
    for (int j = 1; j <= 4; ++j) {
      const int design = macro.Corner[j];
      if (!p.Node_X.valid(design)) {
        message = "Macro " + std::to_string(i) + " refers to node " + std::to_string(design) +
                  ", which does not exist; no mesh is made.";
        return false;
      }
      int node = 0;
      if (!Find_Or_Add_Node(p, index, p.Node_X[design], p.Node_Y[design], node, message)) return false;
      e.Corner[j] = static_cast<std::int16_t>(node);
    }
    Set_Default_Dof(e);
    p.Mesh_Element.add(std::move(e));
  }
  for (const Border& b : p.Border) {
    Border copy = b;
    copy.Node_A = Mesh_Node_Of(p, index, b.Node_A);
    copy.Node_B = Mesh_Node_Of(p, index, b.Node_B);
    p.Mesh_Border.add(std::move(copy));
  }
  for (const Interface& f : p.Interface) {
    Interface copy = f;
    copy.Node_A = Mesh_Node_Of(p, index, f.Node_A);
    copy.Node_B = Mesh_Node_Of(p, index, f.Node_B);
    p.Mesh_Interface.add(std::move(copy));
  }
  return true;
}

}  // namespace

bool Make_Initial_Mesh(Project& p, Mesh_Session& session, std::string& message) {
  message.clear();
  if (p.Macro.count() > Max_Mesh_Elements) {
    message = Too_Many_Elements_Message;
    return false;
  }
  if (p.Interface.count() > Max_Mesh_Interfaces) {
    message = "The mesh cannot hold more than 1001 interfaces; no mesh is made.";
    return false;
  }
  if (p.Border.count() > Max_I16_Reference) {
    message = "The mesh cannot hold more than 32767 borders; no mesh is made.";
    return false;
  }
  // The old mesh is kept aside until the new one is complete.
  auto nodes = std::move(p.Mesh_Node);
  auto elements = std::move(p.Mesh_Element);
  auto borders = std::move(p.Mesh_Border);
  auto interfaces = std::move(p.Mesh_Interface);
  p.Mesh_Node.clear();
  p.Mesh_Element.clear();
  p.Mesh_Border.clear();
  p.Mesh_Interface.clear();
  Rebuild_Mesh_Index(p, session.Index);
  if (!Build(p, session.Index, message)) {
    p.Mesh_Node = std::move(nodes);
    p.Mesh_Element = std::move(elements);
    p.Mesh_Border = std::move(borders);
    p.Mesh_Interface = std::move(interfaces);
    Rebuild_Mesh_Index(p, session.Index);
    return false;
  }
  // Corners were added through the index one by one; the element sides are indexed here at once.
  Rebuild_Mesh_Index(p, session.Index);
  session.Circuits_Integrated = false;
  return true;
}

}  // namespace pvx
