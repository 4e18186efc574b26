using System.Reflection;
// [assembly: AssemblyVersion("1.0.*")]
[assembly: AssemblyTitle("x")]
[ assembly: AssemblyCompany( "" ) ]
[assembly:AssemblyProduct(Ids.P)]
[assembly: AssemblyVersion("1.0.0.0")][assembly: CLSCompliant(true)]
[assembly: AssemblyCopyright("© 2004")]