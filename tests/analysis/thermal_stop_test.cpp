// A step whose temperatures never settle: the run can be stopped in the middle of it, and left
// alone it ends its variant with a message after a bounded number of passes. Either way the result
// family is closed and reads back with the storages made before that step.
#include <gtest/gtest.h>

#include "analysis/driver.h"
#include "results/result_files.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

// One element of 1 m by 1 m whose capacity is so small that its explicit long-wave radiation
// overshoots further at every pass: from 1.5 h on (the second step) its lower side radiates.
Project Unsettling_Block() {
  Project p;
  New_Project(p);
  Material m;
  m.Name = "foam";
  m.Has_Thermal = true;
  m.Capacity_Wet = 1;  // kJ/m3K
  m.Conductivity_Wet = 1;
  m.Heat_Model = "NO H";
  p.Material.add(m);
  for (auto [x, y] : {std::pair{0.0, 0.0}, {1000.0, 0.0}, {1000.0, 1000.0}, {0.0, 1000.0}})
    p.Mesh_Node.add(Mesh_Node{x, y});
  Macro macro;
  macro.Material = m.Name;
  macro.Corner = {{1, 2, 3, 4}};
  macro.Temperature = 20;
  macro.Thickness = 1000;
  p.Macro.add(macro);
  Mesh_Element e;
  static_cast<Macro_Values&>(e) = macro;
  e.Material = m.Name;
  e.Macro_Number = 1;
  e.Corner = {{1, 2, 3, 4}};
  p.Mesh_Element.add(e);
  Border b;
  b.Node_A = 1;
  b.Node_B = 2;
  b.Thermal_Active = True_Flag;
  Thermal_Period radiating;
  radiating.From = 1.5;
  radiating.Until = 100;
  radiating.Convection_On = False_Flag;
  radiating.Radiation_On = True_Flag;
  radiating.Ea = radiating.Es = 1;
  radiating.Radiation_Function = 0;
  radiating.Temperature_Function = 0;
  b.Thermal_Periods.add(radiating);
  p.Mesh_Border.add(b);
  p.Computation_Time = 4;
  p.Period.clear();
  p.Period.add(Period{0, 4, 1, 1});
  p.Replace_Material = False_Flag;
  p.Result_File_Name = "U.RES";
  Set_Result_Names(p);
  return p;
}

// Counts the events let through after the first step and asks to stop once `stop_at` have passed.
class Counting_Host : public Analysis_Host {
 public:
  int stop_at = -1;
  int pumps_after_first_step = 0;
  int steps = 0;
  std::vector<std::string> messages;
  void Pump_Events() override {
    if (steps >= 1) ++pumps_after_first_step;
  }
  bool Stop_Requested() override { return stop_at >= 0 && pumps_after_first_step >= stop_at; }
  void Report_Step(const Step_Report&) override { ++steps; }
  void Show_Message(const std::string& text, Message_Kind) override { messages.push_back(text); }
};

TEST(Thermal_Iteration, AStepThatDoesNotSettleCanBeStoppedOrEndsWithAMessage) {
  struct Case {
    const char* name;
    int stop_at;
    Run_Outcome outcome;
    const char* message_start;
  };
  const Case cases[] = {
      {"stopped in the 50th pass", 50, Run_Outcome::Stopped, nullptr},
      {"left alone", -1, Run_Outcome::Failed,
       "The temperatures of the step ending at 2 hours did not settle within 1000 iterations"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    test::Temp_Dir dir;
    Project p = Unsettling_Block();
    Run_State run;
    Counting_Host host;
    host.stop_at = c.stop_at;
    std::string message;
    EXPECT_EQ(Run_Analysis(p, run, host, dir.path().string(), message), c.outcome);
    EXPECT_EQ(host.steps, 1);  // the first step, without radiation, settles
    if (c.message_start) {
      ASSERT_EQ(host.messages.size(), 1u);
      EXPECT_EQ(host.messages[0].rfind(c.message_start, 0), 0u) << host.messages[0];
      EXPECT_EQ(run.Thermal_Passes, Max_Thermal_Passes);
    } else {
      EXPECT_TRUE(host.messages.empty());
      // The stop is seen in the pass during which it was asked for (the factorisation lets one
      // event through per column first).
      EXPECT_LT(host.pumps_after_first_step, 50 + 10);
    }
    // The family is closed and holds the initial state and the first step.
    Run_Index index;
    std::string text;
    ASSERT_TRUE(Read_Run_Index_File(dir.file("U.RES"), Run_Index_Version, false, index, text)) << text;
    EXPECT_EQ(Storage_Count(index), 2);
  }
}

}  // namespace
}  // namespace pvx
