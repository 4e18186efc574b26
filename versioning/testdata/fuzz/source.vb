<Assembly: AssemblyTitle("x")> _
' <Assembly: AssemblyVersion("1.0.*")>
